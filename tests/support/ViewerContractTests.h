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

    template <typename Get, typename Put, typename Value>
    void expectKept(const char* name, Get get, Put put, Value first, Value second) {
        for (const Value& value : {first, second}) {
            (viewer.*put)(value);
            for (const QString& path : {subject.run(), subject.unreadable(), QString()}) {
                viewer.putFileName(path);
                EXPECT_EQ((viewer.*get)(), value) << name;
            }
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

#define CINEDISC_KEPT(Name, first, second) \
    this->expectKept(#Name, &ViewerControl::Name, &ViewerControl::put##Name, first, second)

TYPED_TEST_P(ViewerContract, KeepsWhatWasPutOverFiles) {
    EXPECT_EQ(this->viewer.ZoomPercent(), 100);
    EXPECT_EQ(this->viewer.MouseMode(), ViewerControl::MouseWindow);
    EXPECT_FALSE(this->viewer.ShowHeader());
    CINEDISC_KEPT(ZoomPercent, 150, 50);
    CINEDISC_KEPT(MouseMode, 4, 3);
    CINEDISC_KEPT(BackgroundColor, 0, 1);
    CINEDISC_KEPT(RangeStart, 3, -1);
    CINEDISC_KEPT(RangeEnd, 4, 0);
    CINEDISC_KEPT(RangeModeA, 5, 1);
    CINEDISC_KEPT(RangeModeB, 6, 2);
    CINEDISC_KEPT(ThumbIndex, 7, 0);
    CINEDISC_KEPT(ThumbStyle, 2, 0);
    CINEDISC_KEPT(BestFit, true, false);
    CINEDISC_KEPT(Smooth, true, false);
    CINEDISC_KEPT(ShowHeader, true, false);
    CINEDISC_KEPT(BackgroundFill, true, false);
    CINEDISC_KEPT(Option247, true, false);
    CINEDISC_KEPT(Option256, true, false);
    CINEDISC_KEPT(StartupFlag, true, false);
    CINEDISC_KEPT(Tag, QString("D:\\Dicom\\Patient000"), QString());
}
#undef CINEDISC_KEPT

REGISTER_TYPED_TEST_SUITE_P(ViewerContract, ShowsAFileFromItsFirstFrameAsItsHeaderSays,
                            KeepsWhatWasPutOverFiles);

}  // namespace cinedisc::test
