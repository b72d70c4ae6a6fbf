#include "tests/support/form/RecordingForm1.h"

#include <QException>
#include <gtest/gtest.h>

#include <system_error>

namespace cinedisc::test {
namespace {

struct ToolsTest : testing::Test, DiscForm {
    ToolsTest() : DiscForm({patientOf("A", {{3}})}) {}
    void load() {
        form.ezDicom.putFileName(folder("Patient000/Study1/Series1/1.dcm"));
        form.journal.clear();
    }
    DisplayTools& tools = form.behaviour.tools;
};

TEST_F(ToolsTest, CommandsPutTheirMembersInOrder) {
    const auto pressing = [this](const char* name) { return [this, name] { form.press(name); }; };
    const QString fill = "ezDicom.BackgroundFill=true ezDicom.BackgroundColor=%1 Frame6.Visible=false";
    const QString zoom = "ezDicom.BestFit=false ezDicom.ZoomPercent=%1", fit = "ezDicom.BestFit=true";
    const QString hide = " Frame5.Visible=false", polarity = "ezDicom.Polarity=%1";
    const std::pair<std::function<void()>, QString> cases[] = {
        {pressing("cmdFit(0)"), fit + hide},
        {pressing("cmdFit(4)"), zoom.arg(200) + hide},
        {pressing("mnu150"), zoom.arg(150)},
        {pressing("cmdInvert"), polarity.arg(-1)},
        {pressing("mnuNone"), "Option1.Value=true ezDicom.BackgroundFill=false Frame6.Visible=false"},
        {pressing("mnuBlack"), "Option2.Value=true " + fill.arg(1)},
        {pressing("mnuWhite"), "Option3.Value=true " + fill.arg(0)},
        {[&] { tools.zoomFromList(0); }, fit},
        {[&] { tools.zoomFromList(1); }, zoom.arg(50)},
        {[&] { tools.zoomFromList(4); }, zoom.arg(200)},
        {[&] { tools.zoomFromList(5); }, ""},
        {pressing("mnuCopy"), ""},
        {pressing("mnuCopyHeader"), ""},
        {[&] { load(), form.press("mnuCopy"); }, "ezDicom.CopyToClipboard"},
        {pressing("mnuCopyHeader"), "ezDicom.CopyHeaderToClipboard"},
    };
    for (const auto& [command, puts] : cases) {
        form.journal.clear();
        command();
        EXPECT_EQ(form.journal.join(' '), puts);
    }
    form.ezDicom.putPolarity(std::numeric_limits<qint32>::min());
    EXPECT_THROW(tools.cmdInvert_Click(), RunTimeError);
    EXPECT_THROW(tools.cmdFit_Click(5), RunTimeError);
}

TEST_F(ToolsTest, WhateverEndsAnExportEndsItQuietlyAndTheCineGoesOn) {
    form.formatToExport = "BMP";
    const std::function<void()> endings[] = {
        [] {}, [] { throw RunTimeError::pathNotFound(); }, [] { throw std::bad_alloc(); },
        [] { throw std::system_error(EAGAIN, std::system_category()); }, [] { throw QUnhandledException(); }};
    for (const bool playing : {true, false}) {
        for (const auto& end : endings) {
            load();
            form.Timer4.putEnabled(playing);
            bool playedMeanwhile = true;
            form.dialogs.whileSaving = [&] {
                playedMeanwhile = form.Timer4.Enabled();
                end();
            };
            form.press("cmdExport");
            EXPECT_FALSE(playedMeanwhile);
            EXPECT_EQ(form.Timer4.Enabled(), playing);
        }
    }
}

TEST_F(ToolsTest, LoadHandlerPutsTheStartUpDefaults) {
    form.behaviour.Form_Load();
    QString expected = "ezDicom.StartupFlag=false ";
    for (int i = 0; i < 5; ++i)
        expected += QString("thumb(%1).StartupFlag=false thumb(%1).BestFit=true ").arg(i);
    EXPECT_EQ(form.journal.join(' '),
              expected +
                  "Slider1.Value=5 Timer4.Interval=50 DoEvents MouseHook Option4.Value=true "
                  "Option9.Value=true Option3.Value=true ezDicom.BackgroundFill=true "
                  "ezDicom.BackgroundColor=0 Frame6.Visible=false");
}

}  // namespace
}  // namespace cinedisc::test
