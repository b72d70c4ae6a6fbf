#include "tests/support/form/RecordingForm1.h"

#include <QException>
#include <gtest/gtest.h>

#include <system_error>

namespace cinedisc::test {
namespace {

struct ToolsTest : testing::Test {
    ToolsTest() : form(folder.path()) {}
    QTemporaryDir folder;
    RecordingForm1 form;
    DisplayTools& tools = form.behaviour.tools;

    void load() {
        DiscBuilder::write(folder.filePath("1.dcm"), "3");
        form.ezDicom.putFileName(folder.filePath("1.dcm"));
        form.journal.clear();
    }
};

TEST_F(ToolsTest, CommandsWriteTheirMembersInOrder) {
    using T = DisplayTools;
    T* const t = &tools;
    const auto run = [t](void (T::*command)()) { return [t, command] { (t->*command)(); }; };
    const auto fit = [t](int index) { return [t, index] { t->cmdFit_Click(index); }; };
    const auto list = [t](int index) { return [t, index] { t->zoomFromList(index); }; };
    const QString fill = "ezDicom.BackgroundFill=True ezDicom.BackgroundColor=%1 Frame6.Visible=False";
    const QString zoom = "ezDicom.BestFit=False ezDicom.ZoomPercent=%1", hide = " Frame5.Visible=False";
    const std::pair<std::function<void()>, QString> cases[] = {
        {fit(0), "ezDicom.BestFit=True" + hide},
        {fit(1), zoom.arg(100) + hide},
        {fit(2), zoom.arg(50) + hide},
        {fit(3), zoom.arg(150) + hide},
        {fit(4), zoom.arg(200) + hide},
        {[t] { t->zoomTo(150); }, zoom.arg(150)},
        {run(&T::mnuBestFit_Click), "ezDicom.BestFit=True"},
        {run(&T::cmdInvert_Click), "ezDicom.Polarity=-1"},
        {run(&T::cmdInvert_Click), "ezDicom.Polarity=1"},
        {run(&T::mnuNone_Click), "Option1.Value=True ezDicom.BackgroundFill=False Frame6.Visible=False"},
        {run(&T::mnuBlack_Click), "Option2.Value=True " + fill.arg(1)},
        {run(&T::mnuWhite_Click), "Option3.Value=True " + fill.arg(0)},
        {[t] { t->setOption247(); }, "ezDicom.Option247=True"},
        {[t] { t->smoothAgain(); }, "ezDicom.Smooth=True"},
        {[t] { t->headerAgain(); }, "ezDicom.ShowHeader=True"},
        {[t] { t->invertAgain(); }, "ezDicom.Polarity=-1"},
        {[t] { t->magnifyAgain(); }, "ezDicom.MouseMode=3"},
        {[t] { t->panAgain(); }, "ezDicom.MouseMode=4"},
        {[t] { t->labelAgain(); }, "ezDicom.MouseMode=5"},
        {list(0), "ezDicom.BestFit=True"},
        {list(1), zoom.arg(50)},
        {list(2), zoom.arg(100)},
        {list(4), zoom.arg(200)},
        {list(5), ""},
        {[t] { t->mouseModeFromList(2); }, "ezDicom.MouseMode=3"},
        {[t] { t->polarityFromList(4); }, "ezDicom.Polarity=4"},
        {run(&T::mnuCopy_Click), ""},
        {run(&T::mnuCopyHeader_Click), ""},
    };
    for (const auto& [command, puts] : cases) {
        form.journal.clear();
        command();
        EXPECT_EQ(form.journal.entries().join(' '), puts);
    }
    load();
    tools.mnuCopy_Click();
    tools.mnuCopyHeader_Click();
    EXPECT_EQ(form.journal.entries().join(' '), "ezDicom.CopyToClipboard ezDicom.CopyHeaderToClipboard");
    form.ezDicom.putPolarity(std::numeric_limits<qint32>::min());
    EXPECT_THROW(tools.cmdInvert_Click(), RunTimeError);
    EXPECT_THROW(tools.cmdFit_Click(5), RunTimeError);
}

TEST_F(ToolsTest, WhateverEndsAnExportEndsItQuietlyAndTheCineGoesOn) {
    form.exportFormat = "BMP";
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
            form.behaviour.exporter.cmdExport_Click();
            EXPECT_FALSE(playedMeanwhile);
            EXPECT_EQ(form.Timer4.Enabled(), playing);
        }
    }
}

TEST_F(ToolsTest, LoadHandlerPutsTheStartUpDefaults) {
    form.behaviour.Form_Load();
    const QString puts = form.journal.entries().join(' ');
    EXPECT_TRUE(puts.startsWith(
        "ezDicom.StartupFlag=False thumb(0).StartupFlag=False thumb(0).BestFit=True thumb(1).StartupFlag"));
    EXPECT_TRUE(puts.endsWith(
        "thumb(4).BestFit=True Slider1.Value=5 Timer4.Interval=50 DoEvents MouseHook Option4.Value=True "
        "Option9.Value=True Option3.Value=True ezDicom.BackgroundFill=True ezDicom.BackgroundColor=0 "
        "Frame6.Visible=False"));
}

}  // namespace
}  // namespace cinedisc::test
