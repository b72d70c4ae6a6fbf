#include "tests/support/DiscBuilder.h"
#include "tests/support/ViewerContractTests.h"
#include "tests/support/form/StandIns.h"

namespace cinedisc::test {
namespace {

/// The stand-in that the logic's tests rely on keeps the same contract as the component.
class StandInViewer {
  public:
    ViewerControl& viewer() { return viewer_; }
    QString run() const { return disc_.path({"Dicom", "Patient000", "Study1", "Series1", "1.dcm"}); }
    QString still() const { return disc_.path({"Dicom", "Patient000", "Study1", "Series1", "2.dcm"}); }
    QString unreadable() const { return disc_.path({"missing.dcm"}); }

  private:
    DiscBuilder disc_{{patientOf("A", {{12, 1}})}};
    QStringList journal_;
    RecordingViewer viewer_{"ezDicom", journal_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(StandIn, ViewerContract, StandInViewer);

}  // namespace
}  // namespace cinedisc::test
