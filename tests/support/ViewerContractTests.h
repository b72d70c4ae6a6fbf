#pragma once

#include "viewer/ViewerControl.h"

#include <gtest/gtest.h>

#include <limits>

namespace cinedisc::test {

/// What every implementation of the viewer contract must do, the component and stand-ins alike. A Subject
/// offers
///   ViewerControl& viewer();     a fresh instance
///   QString run();               path of a grey file with 12 frames and a window of its own, centre 100,
///   width 50, LINEAR QString still();             path of a grey file with one frame QString unreadable();
///   path of a file that cannot be shown
/// and is instantiated with INSTANTIATE_TYPED_TEST_SUITE_P(Name, ViewerContract, Subject).
template <typename Subject>
class ViewerContract : public testing::Test {
  protected:
    Subject subject;
};

TYPED_TEST_SUITE_P(ViewerContract);

TYPED_TEST_P(ViewerContract, HasNothingLoadedAtFirst) {
    ViewerControl& viewer = this->subject.viewer();
    EXPECT_EQ(viewer.FileName(), "");
    EXPECT_EQ(viewer.FrameCount(), 0);
    EXPECT_EQ(viewer.CurrentFrame(), 1);
    EXPECT_GT(viewer.Polarity(), 0);
    EXPECT_EQ(viewer.ZoomPercent(), 100);
    EXPECT_EQ(viewer.MouseMode(), ViewerControl::MouseWindow);
    EXPECT_FALSE(viewer.ShowHeader());
    EXPECT_FALSE(viewer.CopyToClipboard());
    EXPECT_FALSE(viewer.CopyHeaderToClipboard());
}

TYPED_TEST_P(ViewerContract, ShowsTheFirstFrameOfAFilePut) {
    ViewerControl& viewer = this->subject.viewer();
    viewer.putFileName(this->subject.run());
    EXPECT_EQ(viewer.FileName(), this->subject.run());
    EXPECT_EQ(viewer.FrameCount(), 12);
    EXPECT_EQ(viewer.CurrentFrame(), 1);
    viewer.putFileName(this->subject.still());
    EXPECT_EQ(viewer.FrameCount(), 1);
    EXPECT_EQ(viewer.CurrentFrame(), 1);
}

TYPED_TEST_P(ViewerContract, ShowsFramesThatExistAndNoOthers) {
    ViewerControl& viewer = this->subject.viewer();
    viewer.putFileName(this->subject.run());
    for (const int frame : {12, 1, 7}) {
        viewer.putCurrentFrame(frame);
        EXPECT_EQ(viewer.CurrentFrame(), frame);
    }
    for (const int frame : {0, -1, 13, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        viewer.putCurrentFrame(frame);
        EXPECT_EQ(viewer.CurrentFrame(), 7) << frame;
    }
}

TYPED_TEST_P(ViewerContract, KeepsThePathOfAFileThatCannotBeShown) {
    ViewerControl& viewer = this->subject.viewer();
    viewer.putFileName(this->subject.run());
    viewer.putCurrentFrame(5);
    ASSERT_NO_THROW(viewer.putFileName(this->subject.unreadable()));
    EXPECT_EQ(viewer.FileName(), this->subject.unreadable());
    EXPECT_EQ(viewer.FrameCount(), 0);
    EXPECT_EQ(viewer.CurrentFrame(), 1);
    viewer.putCurrentFrame(2);
    EXPECT_EQ(viewer.CurrentFrame(), 1);
    viewer.putFileName(this->subject.run());
    EXPECT_EQ(viewer.FrameCount(), 12);
}

TYPED_TEST_P(ViewerContract, OpensAFileAsItsHeaderSaysEvenTheSameAgain) {
    ViewerControl& viewer = this->subject.viewer();
    viewer.putFileName(this->subject.run());
    viewer.putCurrentFrame(9);
    viewer.putWindowCenter(11);
    viewer.putWindowWidth(22);
    viewer.putPolarity(-1);
    viewer.putFileName(this->subject.run());
    EXPECT_EQ(viewer.CurrentFrame(), 1);
    EXPECT_EQ(viewer.WindowCenter(), 100);
    EXPECT_EQ(viewer.WindowWidth(), 50);
    EXPECT_GT(viewer.Polarity(), 0);
}

TYPED_TEST_P(ViewerContract, KeepsDisplaySettingsOverFiles) {
    ViewerControl& viewer = this->subject.viewer();
    const auto putAll = [&](bool on, int zoom, int mouse, int color) {
        viewer.putBestFit(on);
        viewer.putZoomPercent(zoom);
        viewer.putSmooth(on);
        viewer.putMouseMode(mouse);
        viewer.putShowHeader(on);
        viewer.putBackgroundFill(on);
        viewer.putBackgroundColor(color);
    };
    for (const bool on : {true, false}) {
        putAll(on, on ? 150 : 50, on ? 4 : 3, on ? 0 : 1);
        for (const QString& path : {this->subject.run(), this->subject.unreadable(), QString()}) {
            viewer.putFileName(path);
            EXPECT_EQ(viewer.BestFit(), on);
            EXPECT_EQ(viewer.ZoomPercent(), on ? 150 : 50);
            EXPECT_EQ(viewer.Smooth(), on);
            EXPECT_EQ(viewer.MouseMode(), on ? 4 : 3);
            EXPECT_EQ(viewer.ShowHeader(), on);
            EXPECT_EQ(viewer.BackgroundFill(), on);
            EXPECT_EQ(viewer.BackgroundColor(), on ? 0 : 1);
        }
    }
}

TYPED_TEST_P(ViewerContract, AnswersTheWindowPutAndIgnoresUnusableWidths) {
    ViewerControl& viewer = this->subject.viewer();
    viewer.putFileName(this->subject.run());
    viewer.putWindowCenter(-7.5);
    viewer.putWindowWidth(300);
    for (const double width : {0.0, -1.0, 0.5}) viewer.putWindowWidth(width);
    EXPECT_EQ(viewer.WindowCenter(), -7.5);
    EXPECT_EQ(viewer.WindowWidth(), 300);
}

TYPED_TEST_P(ViewerContract, AnswersThePolarityPut) {
    ViewerControl& viewer = this->subject.viewer();
    viewer.putFileName(this->subject.run());
    for (const int polarity : {-1, 1, 5, -5, 0, std::numeric_limits<int>::min()}) {
        viewer.putPolarity(polarity);
        EXPECT_EQ(viewer.Polarity(), polarity);
    }
}

TYPED_TEST_P(ViewerContract, UnloadsWhenAPreviewIsBlanked) {
    ViewerControl& viewer = this->subject.viewer();
    viewer.putFileName(this->subject.run());
    viewer.putThumbIndex(3);
    EXPECT_EQ(viewer.FrameCount(), 12);
    viewer.putThumbIndex(-1);
    EXPECT_EQ(viewer.FileName(), "");
    EXPECT_EQ(viewer.FrameCount(), 0);
    viewer.putFileName(this->subject.still());
    EXPECT_EQ(viewer.FrameCount(), 1);
    viewer.putFileName("");
    EXPECT_EQ(viewer.FileName(), "");
    EXPECT_EQ(viewer.FrameCount(), 0);
    EXPECT_EQ(viewer.CurrentFrame(), 1);
}

TYPED_TEST_P(ViewerContract, AnswersWhatWasPutInMembersThatAreOnlyPut) {
    ViewerControl& viewer = this->subject.viewer();
    for (const int number : {3, -1, 0}) {
        viewer.putRangeStart(number);
        viewer.putRangeEnd(number + 1);
        viewer.putRangeModeA(number + 2);
        viewer.putRangeModeB(number + 3);
        viewer.putThumbIndex(number);
        viewer.putThumbStyle(number);
        EXPECT_EQ(viewer.RangeStart(), number);
        EXPECT_EQ(viewer.RangeEnd(), number + 1);
        EXPECT_EQ(viewer.RangeModeA(), number + 2);
        EXPECT_EQ(viewer.RangeModeB(), number + 3);
        EXPECT_EQ(viewer.ThumbIndex(), number);
        EXPECT_EQ(viewer.ThumbStyle(), number);
    }
    for (const bool on : {true, false}) {
        viewer.putOption247(on);
        viewer.putOption256(on);
        viewer.putStartupFlag(on);
        EXPECT_EQ(viewer.Option247(), on);
        EXPECT_EQ(viewer.Option256(), on);
        EXPECT_EQ(viewer.StartupFlag(), on);
    }
    viewer.putTag("D:\\Dicom\\Patient000");
    EXPECT_EQ(viewer.Tag(), "D:\\Dicom\\Patient000");
}

REGISTER_TYPED_TEST_SUITE_P(ViewerContract, HasNothingLoadedAtFirst, ShowsTheFirstFrameOfAFilePut,
                            ShowsFramesThatExistAndNoOthers, KeepsThePathOfAFileThatCannotBeShown,
                            OpensAFileAsItsHeaderSaysEvenTheSameAgain, KeepsDisplaySettingsOverFiles,
                            AnswersTheWindowPutAndIgnoresUnusableWidths, AnswersThePolarityPut,
                            UnloadsWhenAPreviewIsBlanked, AnswersWhatWasPutInMembersThatAreOnlyPut);

}  // namespace cinedisc::test
