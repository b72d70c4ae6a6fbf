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
    struct Case {
        std::function<void()> command;
        QStringList puts;
    };
    const auto fit = [this](int index) { return [this, index] { tools.cmdFit_Click(index); }; };
    const auto zoomed = [](int percent) {
        return QStringList{"ezDicom.BestFit=False", QString("ezDicom.ZoomPercent=%1").arg(percent)};
    };
    const QStringList zoomHides{"Frame5.Visible=False"};
    for (const Case& c : {
             Case{[this] { tools.cmdZoom_Click(); }, {"Frame5.Visible=True"}},
             {fit(0), {"ezDicom.BestFit=True", "Frame5.Visible=False"}},
             {fit(1), zoomed(100) + zoomHides},
             {fit(2), zoomed(50) + zoomHides},
             {fit(3), zoomed(150) + zoomHides},
             {fit(4), zoomed(200) + zoomHides},
             {[this] { tools.zoomTo(150); }, zoomed(150)},
             {[this] { tools.mnuBestFit_Click(); }, {"ezDicom.BestFit=True"}},
             {[this] { tools.cmdInvert_Click(); }, {"ezDicom.Polarity=-1"}},
             {[this] { tools.cmdInvert_Click(); }, {"ezDicom.Polarity=1"}},
             {[this] { tools.cmdSmooth_Click(); }, {"ezDicom.Smooth=True"}},
             {[this] { tools.cmdSmooth_Click(); }, {"ezDicom.Smooth=False"}},
             {[this] { tools.cmdHeader_Click(); }, {"ezDicom.ShowHeader=True"}},
             {[this] { tools.cmdWindow_Click(); }, {"ezDicom.MouseMode=1"}},
             {[this] { tools.cmdMagnify_Click(); }, {"ezDicom.MouseMode=3"}},
             {[this] { tools.cmdPanning_Click(); }, {"ezDicom.MouseMode=4"}},
             {[this] { tools.cmdLabel_Click(); }, {"ezDicom.MouseMode=5"}},
             {[this] { tools.cmdOverlay_Click(); }, {"Frame6.Visible=True"}},
             {[this] { tools.mnuNone_Click(); },
              {"Option1.Value=True", "ezDicom.BackgroundFill=False", "Frame6.Visible=False"}},
             {[this] { tools.mnuBlack_Click(); },
              {"Option2.Value=True", "ezDicom.BackgroundFill=True", "ezDicom.BackgroundColor=1",
               "Frame6.Visible=False"}},
             {[this] { tools.mnuWhite_Click(); },
              {"Option3.Value=True", "ezDicom.BackgroundFill=True", "ezDicom.BackgroundColor=0",
               "Frame6.Visible=False"}},
             {[this] { tools.Command3_Click(); }, {"ezDicom.Option256=True"}},
             {[this] { tools.setOption247(); }, {"ezDicom.Option247=True"}},
             {[this] { tools.smoothAgain(); }, {"ezDicom.Smooth=True"}},
             {[this] { tools.headerAgain(); }, {"ezDicom.ShowHeader=False"}},
             {[this] { tools.invertAgain(); }, {"ezDicom.Polarity=-1"}},
             {[this] { tools.magnifyAgain(); }, {"ezDicom.MouseMode=3"}},
             {[this] { tools.panAgain(); }, {"ezDicom.MouseMode=4"}},
             {[this] { tools.labelAgain(); }, {"ezDicom.MouseMode=5"}},
             {[this] { tools.zoomFromList(0); }, {"ezDicom.BestFit=True"}},
             {[this] { tools.zoomFromList(1); }, zoomed(50)},
             {[this] { tools.zoomFromList(2); }, zoomed(100)},
             {[this] { tools.zoomFromList(4); }, zoomed(200)},
             {[this] { tools.mouseModeFromList(2); }, {"ezDicom.MouseMode=3"}},
             {[this] { tools.polarityFromList(4); }, {"ezDicom.Polarity=4"}},
             {[this] { tools.mnuCopy_Click(); }, {}},
             {[this] { tools.mnuCopyHeader_Click(); }, {}},
         }) {
        form.journal.clear();
        c.command();
        EXPECT_EQ(form.journal.entries(), c.puts);
    }
}

TEST_F(ToolsTest, CopiesOfALoadedImage) {
    load();
    tools.mnuCopy_Click();
    tools.mnuCopyHeader_Click();
    EXPECT_EQ(form.journal.entries(),
              QStringList({"ezDicom.CopyToClipboard", "ezDicom.CopyHeaderToClipboard"}));
}

TEST_F(ToolsTest, ValuesOutOfRange) {
    form.ezDicom.putPolarity(std::numeric_limits<qint32>::min());
    EXPECT_THROW(tools.cmdInvert_Click(), RunTimeError);
    EXPECT_THROW(tools.cmdFit_Click(5), RunTimeError);
}

TEST_F(ToolsTest, ExportNeedsAnImageAndPausesTheCine) {
    form.exportFormat = "BMP";
    form.dialogs.saveName = "x.bmp";
    form.behaviour.exporter.cmdExport_Click();
    EXPECT_EQ(form.dialogs.asked, QStringList());
    // Whatever is raised on the way ends it as quietly as its end does.
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
    const QStringList puts = form.journal.entries();
    EXPECT_EQ(puts.mid(0, 3), QStringList({"ezDicom.StartupFlag=False", "thumb(0).StartupFlag=False",
                                           "thumb(0).BestFit=True"}));
    EXPECT_EQ(puts.mid(11), QStringList({"Slider1.Value=5", "Timer4.Interval=50", "DoEvents", "MouseHook",
                                         "Option4.Value=True", "Option9.Value=True", "Option3.Value=True",
                                         "ezDicom.BackgroundFill=True", "ezDicom.BackgroundColor=0",
                                         "Frame6.Visible=False"}));
}

}  // namespace
}  // namespace cinedisc::test
