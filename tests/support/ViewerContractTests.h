#pragma once

#include "viewer/ViewerControl.h"

#include <gtest/gtest.h>

#include <limits>

namespace cinedisc::test {

/// What every implementation of the viewer contract must do, the component and stand-ins alike. A Subject
/// offers a fresh `viewer()` and the paths of three grey files: `run()` has 12 frames and a window of its
/// own, centre 100, width 50, LINEAR; `still()` has one frame; `unreadable()` cannot be shown.
template <typename Subject>
class ViewerContract : public testing::Test {
  protected:
    void expectShown(const QString& path, int frames) {
        EXPECT_EQ(viewer.FileName(), path);
        EXPECT_EQ(viewer.FrameCount(), frames);
        EXPECT_EQ(viewer.CurrentFrame(), 1);
        EXPECT_GT(viewer.Polarity(), 0);
        // Frames that there are, and no others.
        for (const int frame : {frames, 0, -1, frames + 1, std::numeric_limits<int>::min()}) {
            viewer.putCurrentFrame(frame);
            EXPECT_EQ(viewer.CurrentFrame(), std::max(frames, 1)) << frame;
        }
    }

    Subject subject;
    ViewerControl& viewer = subject.viewer();
};

TYPED_TEST_SUITE_P(ViewerContract);

TYPED_TEST_P(ViewerContract, ShowsAFileFromItsFirstFrameAsItsHeaderSays) {
    ViewerControl& viewer = this->viewer;
    this->expectShown("", 0);
    EXPECT_FALSE(viewer.CopyToClipboard() || viewer.CopyHeaderToClipboard());
    const QString run = this->subject.run(), still = this->subject.still();
    for (const auto& [path, frames] :
         {std::pair{run, 12}, {still, 1}, {run, 12}, {run, 12}, {this->subject.unreadable(), 0}, {run, 12}}) {
        ASSERT_NO_THROW(viewer.putFileName(path));
        this->expectShown(path, frames);
        if (path == run) {
            EXPECT_EQ(viewer.WindowCenter(), 100);
            EXPECT_EQ(viewer.WindowWidth(), 50);
        }
        viewer.putWindowCenter(-7.5);
        for (const double width : {300.0, 0.0, -1.0, 0.5}) viewer.putWindowWidth(width);
        if (path == run) {
            EXPECT_EQ(viewer.WindowCenter(), -7.5);
            EXPECT_EQ(viewer.WindowWidth(), 300) << "others cannot be used";
        }
        for (const int polarity : {-1, 1, 5, 0, std::numeric_limits<int>::min()}) {
            viewer.putPolarity(polarity);
            EXPECT_EQ(viewer.Polarity(), polarity);
        }
    }
    viewer.putThumbIndex(3);
    EXPECT_EQ(viewer.FrameCount(), 12);
    viewer.putThumbIndex(-1);
    viewer.putPolarity(1);
    this->expectShown("", 0);
}

TYPED_TEST_P(ViewerContract, KeepsWhatWasPutOverFiles) {
    using V = ViewerControl;
    constexpr struct {
        qint32 (V::*get)() const;
        void (V::*put)(qint32);
        qint32 first, second;
    } numbers[] = {{&V::ZoomPercent, &V::putZoomPercent, 150, 50},
                   {&V::MouseMode, &V::putMouseMode, 4, 3},
                   {&V::BackgroundColor, &V::putBackgroundColor, 0, 1},
                   {&V::RangeStart, &V::putRangeStart, 3, -1},
                   {&V::RangeEnd, &V::putRangeEnd, 4, 0},
                   {&V::RangeModeA, &V::putRangeModeA, 5, 1},
                   {&V::RangeModeB, &V::putRangeModeB, 6, 2},
                   {&V::ThumbIndex, &V::putThumbIndex, 7, 0},
                   {&V::ThumbStyle, &V::putThumbStyle, 2, 0}};
    constexpr struct {
        bool (V::*get)() const;
        void (V::*put)(bool);
    } flags[] = {{&V::BestFit, &V::putBestFit},        {&V::Smooth, &V::putSmooth},
                 {&V::ShowHeader, &V::putShowHeader},  {&V::BackgroundFill, &V::putBackgroundFill},
                 {&V::Option247, &V::putOption247},    {&V::Option256, &V::putOption256},
                 {&V::StartupFlag, &V::putStartupFlag}};
    ViewerControl& viewer = this->viewer;
    EXPECT_EQ(viewer.ZoomPercent(), 100);
    EXPECT_EQ(viewer.MouseMode(), V::MouseWindow);
    EXPECT_FALSE(viewer.ShowHeader());
    for (const bool on : {true, false}) {
        for (const auto& number : numbers) (viewer.*number.put)(on ? number.first : number.second);
        for (const auto& flag : flags) (viewer.*flag.put)(on);
        viewer.putTag(on ? "D:\\Dicom\\Patient000" : "");
        for (const QString& path : {this->subject.run(), this->subject.unreadable(), QString()}) {
            viewer.putFileName(path);
            for (const auto& number : numbers)
                EXPECT_EQ((viewer.*number.get)(), on ? number.first : number.second) << &number - numbers;
            for (const auto& flag : flags) EXPECT_EQ((viewer.*flag.get)(), on) << &flag - flags;
            EXPECT_EQ(viewer.Tag(), on ? "D:\\Dicom\\Patient000" : "");
        }
    }
}

REGISTER_TYPED_TEST_SUITE_P(ViewerContract, ShowsAFileFromItsFirstFrameAsItsHeaderSays,
                            KeepsWhatWasPutOverFiles);

}  // namespace cinedisc::test
