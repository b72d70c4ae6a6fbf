#include "tests/support/form/RecordingForm1.h"
#include "viewer/CinePace.h"
#include "viewer/MouseWheel.h"
#include "viewer/TimerSteppers.h"

#include <gtest/gtest.h>

#include <random>

namespace cinedisc::test {
namespace {

/// Cine and steps in a window on a series of three runs of 3, 1 and 4 frames.
struct SeriesTest : testing::Test, RecordingWindow {
    SeriesTest() {
        File1.putPath(disc.path({"Dicom", "Patient000", "Study1", "Series1"}));
        sb1.putMax(4);
        Slider2.onChange = [this] { steps.Slider2_Change(); };
    }
    void show(int file, int frame) {
        ezDicom.putFileName(File1.fullPath(file));
        ezDicom.putCurrentFrame(frame);
        sb1.putValue(file + 1);
        Slider2.putMax(10);
        Slider2.putValue(frame);
        journal.clear();
    }
    QString shown() const {
        const int file = File1.positionOf(ezDicom.FileName()).value();
        return QString("%1:%2").arg(file).arg(ezDicom.CurrentFrame());
    }

    DiscBuilder disc{{patientOf("A", {{3, 1, 4}})}};
    CinePlayer cine{controls};
    FrameStepper steps{controls};
};

TEST_F(SeriesTest, TicksPutInOrder) {
    constexpr bool forward = true, reverse = false, loop = true, goOn = false;
    const struct {
        bool forward, loop;
        int file, frame;
        const char* first;
        int to, image = 0;
    } cases[] = {
        {forward, loop, 0, 2, "Slider2.Max=3, ezDicom.CurrentFrame=3", 3},
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
        {reverse, goOn, 0, 1, "ezDicom.FileName=3.dcm, Slider2.Max=4, sb1.Value=3, ezDicom.CurrentFrame=4", 4,
         3},
    };
    for (const auto& c : cases) {
        (c.forward ? Option9 : Option10).putValue(true);
        (c.loop ? Option4 : Option11).putValue(true);
        show(c.file, c.frame);
        cine.Timer4_Timer();
        QString expected = QString("%1, Slider2.Value=%2, ").arg(c.first).arg(c.to);
        if (c.image) expected += QString("lblImg.Caption=Image : %1/3, ").arg(c.image);
        expected += QString("lblFra.Caption=Frame :%1, DoEvents").arg(c.to);
        EXPECT_EQ(puts().join(", "), expected + (c.forward || c.loop ? "" : ", DoEvents"));
    }
}

TEST_F(SeriesTest, StepsPutInOrderAndWrap) {
    using S = FrameStepper;
    const auto expectPuts = [this](const char* first, int image, int frame) {
        EXPECT_EQ(puts().join(", "), QString("%1, lblImg.Caption=Image : %2/3, lblFra.Caption=Frame :%3")
                                         .arg(first)
                                         .arg(image)
                                         .arg(frame));
    };
    // When the image changes, the frame's label lags behind.
    const struct {
        void (S::*step)();
        int file, frame;
        const char* first;
        int image, label;
    } cases[] = {{&S::cmdNext_Click, 0, 2, "ezDicom.CurrentFrame=3, Slider2.Value=3", 1, 3},
                 {&S::cmdNext_Click, 0, 3, "ezDicom.CurrentFrame=1, Slider2.Value=1", 1, 1},
                 {&S::cmdPrev_Click, 0, 2, "ezDicom.CurrentFrame=1, Slider2.Value=1", 1, 1},
                 {&S::cmdPrev_Click, 2, 1, "ezDicom.CurrentFrame=4, Slider2.Value=4", 3, 4},
                 {&S::cmdNextImage_Click, 2, 4, "ezDicom.FileName=1.dcm, sb1.Value=1", 1, 4},
                 {&S::cmdNextImage_Click, 0, 2, "ezDicom.FileName=2.dcm, sb1.Value=2", 2, 2},
                 {&S::cmdPrevImage_Click, 0, 3, "ezDicom.FileName=3.dcm, sb1.Value=3", 3, 3}};
    for (const auto& c : cases) {
        show(c.file, c.frame);
        (steps.*c.step)();
        expectPuts(c.first, c.image, c.label);
    }
    show(2, 2);
    steps.Slider2_Change();
    EXPECT_EQ(puts(), QStringList());
    steps.showLast();
    expectPuts("ezDicom.CurrentFrame=4, Slider2.Value=4", 3, 4);
    Option10.putValue(true);
    Option11.putValue(true);
    show(0, 1);
    steps.cmdPrevImage_Click();
    expectPuts("ezDicom.FileName=3.dcm, ezDicom.CurrentFrame=4, sb1.Value=3", 3, 1);
    Slider2.putValue(3);
    expectPuts("Slider2.Value=3, ezDicom.CurrentFrame=3", 3, 3);
    show(2, 4);
    Slider2.putMax(2);
    puts();
    steps.cmdPrev_Click();  // to frame 3, which the slider refuses: the step ends quietly
    EXPECT_EQ(puts().join(", "), "ezDicom.CurrentFrame=3, Slider2.Value=3");
}

TEST_F(SeriesTest, AFileOutsideTheListCountsAsTheFirst) {
    Option11.putValue(true);
    const std::function<void()> forward[] = {[&] { cine.Timer4_Timer(); },
                                             [&] { steps.cmdNextImage_Click(); }};
    for (const auto& goOn : forward) {
        ezDicom.putFileName(disc.path({"CD.xml"}));
        goOn();
        EXPECT_EQ(shown(), "1:1");
    }
    sb1.putMax(2);
    EXPECT_THROW(cine.Timer4_Timer(), RunTimeError);
    sb1.putMax(4);
    // Without any files the shown one goes on.
    show(2, 4);
    File1.putPath(disc.path());
    steps.cmdNextImage_Click();
    steps.cmdPrevImage_Click();
    EXPECT_EQ(puts(), QStringList());
    for (const auto& [direction, frame] : {std::pair{&Option9, 1}, {&Option10, 4}}) {
        direction->putValue(true);
        cine.Timer4_Timer();
        EXPECT_TRUE(ezDicom.FileName().endsWith("3.dcm"));
        EXPECT_EQ(ezDicom.CurrentFrame(), frame);
    }
}

TEST_F(SeriesTest, CommandsNeedAFile) {
    const auto pressAll = [this] {
        cine.cmdPlay_Click();
        cine.cmdReverse_Click();
        cine.cmdStop_Click();
    };
    puts();
    pressAll();
    using S = FrameStepper;
    for (const auto step : {&S::cmdNext_Click, &S::cmdPrev_Click, &S::cmdNextImage_Click,
                            &S::cmdPrevImage_Click, &S::Slider2_Change})
        (steps.*step)();
    EXPECT_EQ(puts(), QStringList());
    show(2, 2);
    pressAll();
    cine.hold();
    cine.resume();
    EXPECT_EQ(puts().join(", "),
              "Option9.Value=true, Timer4.Enabled=true, Option10.Value=true, Timer4.Enabled=true, "
              "Timer4.Enabled=false, ezDicom.RangeStart=2, ezDicom.RangeEnd=4, ezDicom.RangeModeA=3, "
              "ezDicom.RangeModeB=3, Timer4.Enabled=false, ezDicom.RangeModeA=1, ezDicom.RangeModeB=1, "
              "Timer4.Enabled=true");
    // A tick takes the label tool away, and yields to a click.
    for (const auto& [before, after] : {std::pair{5, 1}, {3, 3}}) {
        ezDicom.putMouseMode(before);
        cine.Timer4_Timer();
        EXPECT_EQ(ezDicom.MouseMode(), after);
    }
    pending = [this] { cine.cmdStop_Click(); };
    cine.Timer4_Timer();
    EXPECT_FALSE(Timer4.Enabled());
}

TEST_F(SeriesTest, SpeedSliderSetsTheInterval) {
    int speed = 0;
    for (const int interval : {110, 100, 90, 80, 70, 50, 40, 30, 20, 10, 1}) {
        Slider1.putValue(speed++);
        puts();
        cine.Slider1_Change();
        EXPECT_EQ(puts().join(", "), QString("Timer4.Interval=%1, DoEvents").arg(interval));
    }
}

TEST_F(SeriesTest, TheOtherClocksLeaveSlidersAlone) {
    RecordingLabel folderLabel("Label1", journal);
    TimerSteppers steppers(controls, folderLabel);
    show(0, 2);
    cine.Timer1_Timer();
    cine.Timer1_Timer();
    for (int i = 0; i < 3; ++i) steppers.stepReverse(Timer4);
    EXPECT_EQ(puts().join(", "),
              "ezDicom.CurrentFrame=3, DoEvents, ezDicom.CurrentFrame=1, DoEvents, ezDicom.CurrentFrame=3, "
              "Label1.Caption=50, DoEvents, ezDicom.CurrentFrame=2, Label1.Caption=50, DoEvents, "
              "ezDicom.CurrentFrame=1, Label1.Caption=50, DoEvents");
    QString visited;
    for (int i = 0; i < 11; ++i) {
        steppers.stepForward();
        visited += shown() + " ";
    }
    EXPECT_EQ(visited, "0:2 0:3 1:1 2:1 2:2 2:3 2:4 0:1 0:2 0:3 1:1 ");
}

TEST(MouseWheel, CodesOfPlatformVersions) {
    constexpr qint32 unchanged = 7;
    constexpr quint32 registered = 0xC123;
    constexpr struct {
        quint32 platform, major, minor;
        qint32 code;
        quint32 message;
    } cases[] = {{0, 3, 1, 32, 0x20A},    {1, 4, 0, 95, 0x20A},
                 {1, 4, 10, 98, 0x20A},   {1, 4, 90, unchanged, registered},
                 {2, 3, 51, 351, 0x20A},  {2, 4, 0, 40, 0x20A},
                 {2, 5, 1, 2000, 0x20A},  {2, 10, 0, unchanged, registered},
                 {3, 5, 0, 0, registered}};
    for (const auto& c : cases) {
        const qint32 code = wheel::osWheelCode(c.platform, c.major, c.minor, unchanged);
        EXPECT_EQ(code, c.code) << c.platform << ' ' << c.major << '.' << c.minor;
        EXPECT_EQ(wheel::wheelMessage(code, [] { return registered; }), c.message);
    }
}

TEST(CinePaceTest, KeepsARateThatMillisecondsDoNotDivideAndLetsNoTicksBurst) {
    std::mt19937 random(7);
    for (const double rate : {7.5, 12.5, 15.0, 24.0, 25.0, 29.97, 30.0, 60.0}) {
        CinePace pace;
        std::uniform_real_distribution<double> late(0, 5);
        double now = 1000;
        const double start = now;
        const int ticks = 600;
        for (int i = 0; i < ticks; ++i) now += pace.next(now, rate) + late(random);
        EXPECT_NEAR(ticks * 1000 / (now - start), rate, rate / 100) << rate;
        // A tick that is late by far is not made good.
        EXPECT_NEAR(pace.next(now + 10000, rate), 1000 / rate, 1) << rate;
    }
}

TEST(CinePaceTest, MetersTheFramesOfTheLastTwoSeconds) {
    RateMeter meter;
    for (int i = 0; i <= 100; ++i) meter.drawn(i * 100.0);
    for (int i = 1; i <= 60; ++i) meter.drawn(10000 + i * 50.0);
    EXPECT_NEAR(meter.rate(13000), 20, 0.01);
    EXPECT_EQ(meter.rate(15001), 0);
}

}  // namespace
}  // namespace cinedisc::test
