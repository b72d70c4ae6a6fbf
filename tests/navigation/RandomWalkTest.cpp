#include "tests/support/form/DiscWalk.h"
#include "tests/support/form/RecordingForm1.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// 20 discs of 1000 steps each; CINEDISC_WALKS asks for more discs.
TEST(RandomWalk, EverythingShownBelongsToTheNamedPatient) {
    const int walks = std::max(20, qEnvironmentVariableIntValue("CINEDISC_WALKS"));
    int shown = 0;
    for (int seed = 1; seed <= walks && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        OddDisc disc(unsigned(seed), [](int frames) { return QByteArray::number(frames); });
        RecordingForm1 form(disc.disc().path());
        form.behaviour.Form_Load();
        const auto openFolder = [&](const QString& folder) {
            form.dialogs.folder = folder;
            form.behaviour.opener.mnuOpen_Click();
        };
        DiscWalk walk(disc, form.behaviour,
                      {[&](int node) { form.clickNode(node); }, [&] { return form.warns(); }, openFolder});
        for (int i = 0; i < 1000 && !testing::Test::HasFailure(); ++i) walk.step();
        EXPECT_EQ(form.dialogs.asked.count("Dicom"), form.dialogs.asked.size());
        shown += walk.picturesShown();
    }
    EXPECT_GT(shown, 20 * 20);
}

}  // namespace
}  // namespace cinedisc::test
