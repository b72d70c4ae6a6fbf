#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingWindow.h"
#include "viewer/CinePlayer.h"
#include "viewer/FrameStepper.h"
#include "viewer/MouseWheel.h"
#include "viewer/TimerSteppers.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// Cine and steps in a window on a series of three runs of 3, 1 and 4 frames.
struct SeriesTest : testing::Test {
    SeriesTest() {
        window.File1.putPath(disc.path({"Dicom", "Patient000", "Study1", "Series1"}));
        window.sb1.putMax(4);
        window.Slider2.changed = [this] { steps.Slider2_Change(); };
        window.journal.clear();
    }
    void show(int file, int frame) {
        window.ezDicom.putFileName(window.File1.fullPath(file));
        window.ezDicom.putCurrentFrame(frame);
        window.sb1.putValue(file + 1);
        window.Slider2.putMax(10);
        window.Slider2.putValue(frame);
        window.journal.clear();
    }
    QString shown() const {
        const int file = window.File1.positionOf(window.ezDicom.FileName()).value();
        return QString("%1:%2").arg(file).arg(window.ezDicom.CurrentFrame());
    }
    /// What was put since the last call.
    QString puts() {
        const QString all = window.putsWithoutFolders().join(", ");
        window.journal.clear();
        return all;
    }

    DiscBuilder disc{{patientOf("A", {{3, 1, 4}})}};
    RecordingWindow window;
    CinePlayer cine{window.controls};
    FrameStepper steps{window.controls};
};

TEST_F(SeriesTest, TicksPutInOrder) {
    struct Case {
        RecordingOption &direction, &endOfRun;
        int file, frame;
        const char* first;
        int to, image = 0;
    };
    auto &forward = window.Option9, &reverse = window.Option10;
    auto &loop = window.Option4, &goOn = window.Option11;
    for (const Case& c : {
             Case{forward, loop, 0, 2, "Slider2.Max=3, ezDicom.CurrentFrame=3", 3},
             {forward, loop, 0, 3, "ezDicom.CurrentFrame=1, Slider2.Max=3", 1},
             {forward, loop, 1, 1, "ezDicom.CurrentFrame=1", 1},
             {reverse, loop, 0, 2, "Slider2.Max=3, ezDicom.CurrentFrame=1", 1},
             {reverse, loop, 2, 1, "Slider2.Max=4, ezDicom.CurrentFrame=4", 4},
             {reverse, loop, 1, 1, "ezDicom.CurrentFrame=1", 1},
             {forward, goOn, 0, 1, "Slider2.Max=3, ezDicom.CurrentFrame=2", 2},
             {forward, goOn, 0, 3, "ezDicom.FileName=2.dcm, sb1.Value=2", 1, 2},
             {forward, goOn, 1, 1, "ezDicom.FileName=3.dcm, Slider2.Max=4, sb1.Value=3", 1, 3},
             {forward, goOn, 2, 4, "ezDicom.FileName=1.dcm, Slider2.Max=3, sb1.Value=1", 1, 1},
             {reverse, goOn, 2, 2, "Slider2.Max=4, ezDicom.CurrentFrame=1", 1},
             {reverse, goOn, 0, 1,
              "ezDicom.FileName=3.dcm, Slider2.Max=4, sb1.Value=3, ezDicom.CurrentFrame=4", 4, 3},
         }) {
        c.direction.putValue(true);
        c.endOfRun.putValue(true);
        show(c.file, c.frame);
        cine.Timer4_Timer();
        QString expected = QString("%1, Slider2.Value=%2, ").arg(c.first).arg(c.to);
        if (c.image) expected += QString("lblImg.Caption=Image : %1/3, ").arg(c.image);
        expected += QString("lblFra.Caption=Frame :%1, DoEvents").arg(c.to);
        if (window.controls.isReverseContinuous()) expected += ", DoEvents";
        EXPECT_EQ(puts(), expected);
    }
}

TEST_F(SeriesTest, TicksOnAFileOutsideTheList) {
    window.Option11.putValue(true);
    window.ezDicom.putFileName(disc.path({"CD.xml"}));
    cine.Timer4_Timer();
    EXPECT_EQ(shown(), "1:1") << "it counts as the first";
    window.ezDicom.putFileName(disc.path({"CD.xml"}));
    steps.cmdNextImage_Click();
    EXPECT_EQ(shown(), "1:1");
    window.sb1.putMax(2);
    EXPECT_THROW(cine.Timer4_Timer(), RunTimeError);
    window.sb1.putMax(4);
    // Without any files the shown one goes on.
    show(2, 4);
    window.File1.putPath(disc.path());
    for (const auto& [direction, frame] : {std::pair{&window.Option9, 1}, {&window.Option10, 4}}) {
        direction->putValue(true);
        cine.Timer4_Timer();
        EXPECT_TRUE(window.ezDicom.FileName().endsWith("3.dcm"));
        EXPECT_EQ(window.ezDicom.CurrentFrame(), frame);
    }
}

TEST_F(SeriesTest, ATickTakesTheLabelToolAwayAndYieldsToAClick) {
    for (const auto& [before, after] : {std::pair{5, 1}, {3, 3}}) {
        window.ezDicom.putMouseMode(before);
        cine.Timer4_Timer();
        EXPECT_EQ(window.ezDicom.MouseMode(), after);
    }
    show(0, 1);
    window.Timer4.putEnabled(true);
    window.messages.pending = [this] { cine.cmdStop_Click(); };
    cine.Timer4_Timer();
    EXPECT_FALSE(window.Timer4.Enabled());
}

TEST_F(SeriesTest, CommandsNeedAFile) {
    const auto pressAll = [this] {
        cine.cmdPlay_Click();
        cine.cmdReverse_Click();
        cine.cmdStop_Click();
    };
    pressAll();
    steps.cmdNext_Click();
    steps.cmdPrev_Click();
    steps.cmdNextImage_Click();
    steps.cmdPrevImage_Click();
    steps.Slider2_Change();
    EXPECT_EQ(puts(), "");
    show(2, 2);
    pressAll();
    EXPECT_EQ(puts(),
              "Option9.Value=True, Timer4.Enabled=True, Option10.Value=True, Timer4.Enabled=True, "
              "Timer4.Enabled=False");
    cine.hold();
    cine.resume();
    EXPECT_EQ(puts(),
              "ezDicom.RangeStart=2, ezDicom.RangeEnd=4, ezDicom.RangeModeA=3, ezDicom.RangeModeB=3, "
              "Timer4.Enabled=False, ezDicom.RangeModeA=1, ezDicom.RangeModeB=1, Timer4.Enabled=True");
}

TEST_F(SeriesTest, SpeedSliderSetsTheInterval) {
    int speed = 0;
    for (const int interval : {110, 100, 90, 80, 70, 50, 40, 30, 20, 10, 1}) {
        window.Slider1.putValue(speed++);
        puts();
        cine.Slider1_Change();
        EXPECT_EQ(puts(), QString("Timer4.Interval=%1, DoEvents").arg(interval));
    }
}

TEST_F(SeriesTest, FrameStepsWrapAndKeepLabels) {
    struct Case {
        int file, from;
        bool next;
        int to;
    };
    for (const Case& c : {Case{0, 2, true, 3}, {0, 3, true, 1}, {0, 2, false, 1}, {2, 1, false, 4}}) {
        show(c.file, c.from);
        c.next ? steps.cmdNext_Click() : steps.cmdPrev_Click();
        EXPECT_EQ(puts(), QString("ezDicom.CurrentFrame=%1, Slider2.Value=%1, lblImg.Caption=Image : %2/3, "
                                  "lblFra.Caption=Frame :%1")
                              .arg(c.to)
                              .arg(c.file + 1));
    }
    window.Slider2.putMax(2);
    puts();
    steps.cmdPrev_Click();  // to frame 3, which the slider refuses: the step ends quietly
    EXPECT_EQ(puts(), "ezDicom.CurrentFrame=3, Slider2.Value=3");
}

TEST_F(SeriesTest, ImageStepsWrapAndTheFrameLabelLags) {
    const QString expected =
        "ezDicom.FileName=%1.dcm, sb1.Value=%1, lblImg.Caption=Image : %1/3, lblFra.Caption=Frame :4";
    show(2, 4);
    steps.cmdNextImage_Click();
    EXPECT_EQ(puts(), expected.arg(1));
    EXPECT_EQ(shown(), "0:1");
    steps.cmdPrevImage_Click();
    EXPECT_EQ(puts(), expected.arg(3));
    show(0, 1);
    window.Option10.putValue(true);
    window.Option11.putValue(true);
    steps.cmdPrevImage_Click();
    EXPECT_EQ(shown(), "2:4") << "at its end";
}

TEST_F(SeriesTest, SeekShowsTheFrameOnce) {
    show(2, 1);
    window.Slider2.putValue(3);
    EXPECT_EQ(shown(), "2:3");
    puts();
    steps.Slider2_Change();
    EXPECT_EQ(puts(), "");
}

TEST_F(SeriesTest, TheOtherClocksLeaveSlidersAlone) {
    RecordingLabel folderLabel("Label1", window.journal);
    TimerSteppers steppers(window.controls, folderLabel);
    show(0, 2);
    cine.Timer1_Timer();
    cine.Timer1_Timer();
    steppers.stepReverse(window.Timer4);
    EXPECT_EQ(puts(),
              "ezDicom.CurrentFrame=3, DoEvents, ezDicom.CurrentFrame=1, DoEvents, ezDicom.CurrentFrame=3, "
              "Label1.Caption=50, DoEvents");
    QStringList visited;
    for (int i = 0; i < 10; ++i) {
        steppers.stepForward();
        visited << shown();
    }
    EXPECT_EQ(visited.join(' '), "1:1 2:1 2:2 2:3 2:4 0:1 0:2 0:3 1:1 2:1");
}

TEST(MouseWheel, CodesOfPlatformVersions) {
    struct Case {
        quint32 platform, major, minor;
        qint32 code;
        quint32 message;
    };
    constexpr qint32 unchanged = 7;
    constexpr quint32 registered = 0xC123;
    for (const Case& c : {Case{0, 3, 1, 32, 0x20A},
                          {1, 4, 0, 95, 0x20A},
                          {1, 4, 10, 98, 0x20A},
                          {1, 4, 90, unchanged, registered},
                          {2, 3, 51, 351, 0x20A},
                          {2, 4, 0, 40, 0x20A},
                          {2, 5, 1, 2000, 0x20A},
                          {2, 10, 0, unchanged, registered},
                          {3, 5, 0, 0, registered}}) {
        const qint32 code = wheel::osWheelCode(c.platform, c.major, c.minor, unchanged);
        EXPECT_EQ(code, c.code) << c.platform << ' ' << c.major << '.' << c.minor;
        EXPECT_EQ(wheel::wheelMessage(code, [] { return registered; }), c.message);
    }
}

TEST(MouseWheel, RollMovesOneStepWithinBounds) {
    Journal journal;
    RecordingRange sb1("sb1", journal, 1, 3, RecordingRange::LoweringMax::RaisesChange);
    using enum WheelRoll;
    QList<int> values;
    for (const auto direction : {AwayFromUser, TowardsUser, TowardsUser, TowardsUser, AwayFromUser}) {
        wheel::roll(sb1, direction);
        values << sb1.Value();
    }
    EXPECT_EQ(values, QList<int>({1, 2, 3, 3, 2}));
}

}  // namespace
}  // namespace cinedisc::test
