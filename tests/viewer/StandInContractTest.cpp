#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingViewer.h"
#include "tests/support/ViewerContractTests.h"

#include <QTemporaryDir>

namespace cinedisc::test {
namespace {

/// The stand-in that the logic's tests rely on keeps the same contract as the component.
class StandIn {
  public:
    StandIn() {
        DiscBuilder::write(run(), "12");
        DiscBuilder::write(still(), "1");
    }
    ViewerControl& viewer() { return viewer_; }
    QString run() const { return folder_.filePath("run.dcm"); }
    QString still() const { return folder_.filePath("still.dcm"); }
    QString unreadable() const { return folder_.filePath("missing.dcm"); }

  private:
    QTemporaryDir folder_;
    Journal journal_;
    RecordingViewer viewer_{"ezDicom", journal_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(StandIn, ViewerContract, StandIn);

}  // namespace
}  // namespace cinedisc::test
