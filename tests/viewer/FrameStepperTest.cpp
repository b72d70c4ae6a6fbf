#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingWindow.h"
#include "viewer/FrameStepper.h"
#include "viewer/MouseWheel.h"
#include "viewer/TimerSteppers.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// A window on a series folder of three runs of 3, 1 and 4 frames.
class FrameStepperTest : public testing::Test {
  protected:
    FrameStepperTest() {
        window.File1.putPath(disc.path({"Dicom", "Patient000", "Study1", "Series1"}));
        window.sb1.putMax(4);
        window.journal.clear();
        window.Slider2.changed = [this] { stepper.Slider2_Change(); };
    }
    void show(int file, int frame) {
        window.ezDicom.putFileName(window.File1.fullPath(file));
        window.ezDicom.putCurrentFrame(frame);
        window.sb1.putValue(file + 1);
        window.Slider2.putValue(frame);
        window.journal.clear();
    }

    DiscBuilder disc{{patientOf("A", {{3, 1, 4}})}};
    RecordingWindow window;
    FrameStepper stepper{window.controls};
};

TEST_F(FrameStepperTest, CommandsWithoutAFileDoNothing) {
    stepper.cmdNext_Click();
    stepper.cmdPrev_Click();
    stepper.cmdNextImage_Click();
    stepper.cmdPrevImage_Click();
    stepper.Slider2_Change();
    EXPECT_EQ(window.journal.entries(), QStringList());
}

TEST_F(FrameStepperTest, FrameStepsWrapAndKeepLabels) {
    struct Case {
        int file, from;
        bool next;
        int to;
    };
    for (const Case& step : {Case{0, 2, true, 3},
                             {0, 3, true, 1},
                             {0, 2, false, 1},
                             {0, 1, false, 3},
                             {1, 1, true, 1},
                             {1, 1, false, 1}}) {
        show(step.file, step.from);
        step.next ? stepper.cmdNext_Click() : stepper.cmdPrev_Click();
        EXPECT_EQ(window.journal.entries(),
                  QStringList({QString("ezDicom.CurrentFrame=%1").arg(step.to),
                               QString("Slider2.Value=%1").arg(step.to),
                               QString("lblImg.Caption=Image : %1/3").arg(step.file + 1),
                               QString("lblFra.Caption=Frame :%1").arg(step.to)}));
    }
}

TEST_F(FrameStepperTest, ImageStepsWrapAndTheFrameLabelLags) {
    show(2, 4);
    stepper.cmdNextImage_Click();
    EXPECT_EQ(window.putsWithoutFolders(),
              QStringList({"ezDicom.FileName=1.dcm", "sb1.Value=1", "lblImg.Caption=Image : 1/3",
                           "lblFra.Caption=Frame :4"}));
    EXPECT_EQ(window.ezDicom.CurrentFrame(), 1);
    window.journal.clear();
    stepper.cmdPrevImage_Click();
    EXPECT_EQ(window.putsWithoutFolders(),
              QStringList({"ezDicom.FileName=3.dcm", "sb1.Value=3", "lblImg.Caption=Image : 3/3",
                           "lblFra.Caption=Frame :4"}));
}

TEST_F(FrameStepperTest, ReverseContinuousEntersThePreviousFileAtItsEnd) {
    window.Option10.putValue(true);
    window.Option11.putValue(true);
    show(0, 1);
    stepper.cmdPrevImage_Click();
    EXPECT_EQ(window.ezDicom.CurrentFrame(), 4);
}

TEST_F(FrameStepperTest, ShownFileOutsideTheListCountsAsTheFirst) {
    window.ezDicom.putFileName(disc.path({"CD.xml"}));
    stepper.cmdNextImage_Click();
    EXPECT_EQ(window.ezDicom.FileName(), window.File1.fullPath(1));
}

TEST_F(FrameStepperTest, SeekShowsTheFrameOnce) {
    show(2, 1);
    window.Slider2.putValue(3);
    EXPECT_EQ(window.ezDicom.CurrentFrame(), 3);
    window.journal.clear();
    stepper.Slider2_Change();
    EXPECT_EQ(window.journal.entries(), QStringList());
}

TEST_F(FrameStepperTest, ErrorsEndAStepQuietlyAndKeepWhatWasDone) {
    show(2, 1);
    window.Slider2.putMax(2);
    stepper.cmdPrev_Click();  // to frame 4, which the slider refuses
    EXPECT_EQ(window.ezDicom.CurrentFrame(), 4);
    EXPECT_EQ(window.lblFra.Caption(), "");
}

TEST_F(FrameStepperTest, TimerSteppersWrapOverFramesAndFiles) {
    RecordingLabel folderLabel("Label1", window.journal);
    TimerSteppers steppers(window.controls, folderLabel);
    show(0, 1);
    steppers.stepReverse(window.Timer4);
    EXPECT_EQ(window.ezDicom.CurrentFrame(), 3);
    EXPECT_EQ(folderLabel.Caption(), "50");
    QStringList visited;
    for (int i = 0; i < 10; ++i) {
        steppers.stepForward();
        visited << QString("%1:%2")
                       .arg(window.File1.positionOf(window.ezDicom.FileName()).value())
                       .arg(window.ezDicom.CurrentFrame());
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
                          {2, 6, 1, unchanged, registered},
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
