#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingWindow.h"
#include "viewer/CinePlayer.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// A window on a series folder of three runs of 3, 1 and 4 frames.
class CinePlayerTest : public testing::Test {
  protected:
    CinePlayerTest() {
        window.File1.putPath(disc.path({"Dicom", "Patient000", "Study1", "Series1"}));
        window.sb1.putMax(4);
        window.journal.clear();
    }

    void show(int file, int frame) {
        window.ezDicom.putFileName(window.File1.fullPath(file));
        window.ezDicom.putCurrentFrame(frame);
        window.Slider2.putMax(10);
        window.journal.clear();
    }

    DiscBuilder disc{{patientOf("A", {{3, 1, 4}})}};
    RecordingWindow window;
    CinePlayer cine{window.controls};
};

struct TickCase {
    const char* name;
    bool forward;
    bool loop;
    int file;
    int frame;
    QStringList puts;
};

void PrintTo(const TickCase& tick, std::ostream* out) { *out << tick.name; }

class CineTick : public CinePlayerTest, public testing::WithParamInterface<TickCase> {};

TEST_P(CineTick, PutsInOrder) {
    const TickCase& tick = GetParam();
    (tick.forward ? window.Option9 : window.Option10).putValue(true);
    (tick.loop ? window.Option4 : window.Option11).putValue(true);
    show(tick.file, tick.frame);

    cine.Timer4_Timer();

    EXPECT_EQ(window.putsWithoutFolders(), tick.puts);
}

INSTANTIATE_TEST_SUITE_P(
    Branches, CineTick,
    testing::Values(
        TickCase{"LoopForwardInside",
                 true,
                 true,
                 0,
                 2,
                 {"Slider2.Max=3", "ezDicom.CurrentFrame=3", "Slider2.Value=3", "lblFra.Caption=Frame :3",
                  "DoEvents"}},
        TickCase{"LoopForwardAtEnd",
                 true,
                 true,
                 0,
                 3,
                 {"ezDicom.CurrentFrame=1", "Slider2.Max=3", "Slider2.Value=1", "lblFra.Caption=Frame :1",
                  "DoEvents"}},
        TickCase{"LoopForwardSingleFrame",
                 true,
                 true,
                 1,
                 1,
                 {"ezDicom.CurrentFrame=1", "Slider2.Value=1", "lblFra.Caption=Frame :1", "DoEvents"}},
        TickCase{"LoopReverseInside",
                 false,
                 true,
                 0,
                 3,
                 {"Slider2.Max=3", "ezDicom.CurrentFrame=2", "Slider2.Value=2", "lblFra.Caption=Frame :2",
                  "DoEvents"}},
        TickCase{"LoopReverseAtStart",
                 false,
                 true,
                 2,
                 1,
                 {"Slider2.Max=4", "ezDicom.CurrentFrame=4", "Slider2.Value=4", "lblFra.Caption=Frame :4",
                  "DoEvents"}},
        TickCase{"LoopReverseSingleFrame",
                 false,
                 true,
                 1,
                 1,
                 {"ezDicom.CurrentFrame=1", "Slider2.Value=1", "lblFra.Caption=Frame :1", "DoEvents"}},
        TickCase{"ContinueForwardInside",
                 true,
                 false,
                 0,
                 1,
                 {"Slider2.Max=3", "ezDicom.CurrentFrame=2", "Slider2.Value=2", "lblFra.Caption=Frame :2",
                  "DoEvents"}},
        TickCase{"ContinueForwardToSingleFrame",
                 true,
                 false,
                 0,
                 3,
                 {"ezDicom.FileName=2.dcm", "sb1.Value=2", "Slider2.Value=1", "lblImg.Caption=Image : 2/3",
                  "lblFra.Caption=Frame :1", "DoEvents"}},
        TickCase{"ContinueForwardFromSingleFrame",
                 true,
                 false,
                 1,
                 1,
                 {"ezDicom.FileName=3.dcm", "Slider2.Max=4", "sb1.Value=3", "Slider2.Value=1",
                  "lblImg.Caption=Image : 3/3", "lblFra.Caption=Frame :1", "DoEvents"}},
        TickCase{"ContinueForwardWraps",
                 true,
                 false,
                 2,
                 4,
                 {"ezDicom.FileName=1.dcm", "Slider2.Max=3", "sb1.Value=1", "Slider2.Value=1",
                  "lblImg.Caption=Image : 1/3", "lblFra.Caption=Frame :1", "DoEvents"}},
        TickCase{"ContinueReverseInside",
                 false,
                 false,
                 2,
                 4,
                 {"Slider2.Max=4", "ezDicom.CurrentFrame=3", "Slider2.Value=3", "lblFra.Caption=Frame :3",
                  "DoEvents", "DoEvents"}},
        TickCase{"ContinueReverseWrapsToLastFrame",
                 false,
                 false,
                 0,
                 1,
                 {"ezDicom.FileName=3.dcm", "Slider2.Max=4", "sb1.Value=3", "ezDicom.CurrentFrame=4",
                  "Slider2.Value=4", "lblImg.Caption=Image : 3/3", "lblFra.Caption=Frame :4", "DoEvents",
                  "DoEvents"}}),
    testing::PrintToStringParamName());

TEST_F(CinePlayerTest, TickTakesTheLabelToolAway) {
    for (const auto& [before, after] : {std::pair{5, 1}, {3, 3}, {4, 4}, {1, 1}}) {
        window.ezDicom.putMouseMode(before);
        cine.Timer4_Timer();
        EXPECT_EQ(window.ezDicom.MouseMode(), after);
    }
}

TEST_F(CinePlayerTest, FileOutsideTheListCountsAsTheFirst) {
    window.Option11.putValue(true);
    DiscBuilder::write(disc.path({"elsewhere.dcm"}), "1");
    window.ezDicom.putFileName(disc.path({"elsewhere.dcm"}));
    cine.Timer4_Timer();
    EXPECT_EQ(window.ezDicom.FileName(), window.File1.fullPath(1));
}

TEST_F(CinePlayerTest, ContinuousCineWithoutFilesStaysOnTheShownFile) {
    show(2, 4);
    const QString shown = window.ezDicom.FileName();
    window.File1.putPath(disc.path());
    window.Option11.putValue(true);
    cine.Timer4_Timer();
    EXPECT_EQ(window.ezDicom.FileName(), shown);
    EXPECT_EQ(window.ezDicom.CurrentFrame(), 1);
    window.Option10.putValue(true);
    cine.Timer4_Timer();
    EXPECT_EQ(window.ezDicom.FileName(), shown);
    EXPECT_EQ(window.ezDicom.CurrentFrame(), 4);
}

TEST_F(CinePlayerTest, StripOutOfRangeIsNotTrapped) {
    window.Option11.putValue(true);
    show(1, 1);
    window.sb1.putMax(2);
    EXPECT_THROW(cine.Timer4_Timer(), RunTimeError);
}

TEST_F(CinePlayerTest, ClickDuringTheYieldTakesEffectAtOnce) {
    show(0, 1);
    window.Timer4.putEnabled(true);
    window.messages.pending = [this] { cine.cmdStop_Click(); };
    cine.Timer4_Timer();
    EXPECT_FALSE(window.Timer4.Enabled());
}

TEST_F(CinePlayerTest, ButtonsNeedAFile) {
    const auto pressAll = [this] {
        cine.cmdPlay_Click();
        cine.cmdReverse_Click();
        cine.cmdStop_Click();
    };
    pressAll();
    EXPECT_EQ(window.journal.entries(), QStringList());
    show(0, 1);
    pressAll();
    EXPECT_EQ(window.journal.entries(),
              QStringList({"Option9.Value=True", "Timer4.Enabled=True", "Option10.Value=True",
                           "Timer4.Enabled=True", "Timer4.Enabled=False"}));
}

TEST_F(CinePlayerTest, SpeedSliderSetsTheInterval) {
    const int intervals[] = {110, 100, 90, 80, 70, 50, 40, 30, 20, 10, 1};
    for (int speed = 0; speed <= 10; ++speed) {
        window.Slider1.putValue(speed);
        window.journal.clear();
        cine.Slider1_Change();
        EXPECT_EQ(window.journal.entries(),
                  QStringList({QString("Timer4.Interval=%1").arg(intervals[speed]), "DoEvents"}));
    }
    EXPECT_EQ(CinePlayer::intervalOf(25), 1);
}

TEST_F(CinePlayerTest, HoldAndResume) {
    show(2, 2);
    cine.hold();
    cine.resume();
    EXPECT_EQ(window.journal.entries(),
              QStringList({"ezDicom.RangeStart=2", "ezDicom.RangeEnd=4", "ezDicom.RangeModeA=3",
                           "ezDicom.RangeModeB=3", "Timer4.Enabled=False", "ezDicom.RangeModeA=1",
                           "ezDicom.RangeModeB=1", "Timer4.Enabled=True"}));
}

TEST_F(CinePlayerTest, SimpleClockWrapsAndLeavesSlidersAlone) {
    show(0, 2);
    cine.Timer1_Timer();
    cine.Timer1_Timer();
    EXPECT_EQ(window.journal.entries(),
              QStringList({"ezDicom.CurrentFrame=3", "DoEvents", "ezDicom.CurrentFrame=1", "DoEvents"}));
}

}  // namespace
}  // namespace cinedisc::test
