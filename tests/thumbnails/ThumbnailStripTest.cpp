#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingWindow.h"
#include "thumbnails/ThumbnailStrip.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// A window on a folder of `files` single-frame files, its strip wired to its scroll bar.
struct StripWindow : RecordingWindow {
    explicit StripWindow(int files, FitPreview whileScrolling = FitPreview::AfterLoad)
        : disc({patientOf("A", {QList<int>(files, 1)})}), strip(controls, whileScrolling) {
        sb1.changed = [this] { strip.scrollFolder(); };
        File1.putPath(disc.path({"Dicom", "Patient000", "Study1", "Series1"}));
        journal.clear();
    }
    DiscBuilder disc;
    ThumbnailStrip strip;
};

TEST(ThumbnailStrip, InitialFillByNumberOfFiles) {
    struct Case {
        int files;
        int fillCount, max, value;
        QStringList names;
    };
    for (const Case& c : {Case{0, 0, 1, 1, {"", "", "", "", ""}},
                          {1, 1, 2, 2, {"1", "", "", "", ""}},
                          {3, 3, 4, 4, {"1", "2", "3", "", ""}},
                          {4, 4, 5, 5, {"1", "2", "3", "4", ""}},
                          {5, 4, 6, 5, {"1", "2", "3", "4", "5"}},
                          {12, 4, 13, 5, {"1", "2", "3", "4", "5"}}}) {
        StripWindow window(c.files);
        window.strip.clear();
        window.strip.initialFill(FitPreview::AsItIs);
        EXPECT_EQ(window.strip.ThumbFillCount(), c.fillCount) << c.files;
        EXPECT_EQ(window.sb1.Max(), c.max) << c.files;
        EXPECT_EQ(window.sb1.Value(), c.value) << c.files;
        EXPECT_EQ(window.stripNames(), c.names) << c.files;
    }
}

TEST(ThumbnailStrip, AShorterFolderIsFilledFromItsStartWhereverTheStripStood) {
    StripWindow window(8);
    window.sb1.putMax(30);
    window.sb1.putValue(29);
    window.strip.clear();
    window.strip.initialFill(FitPreview::AsItIs);
    EXPECT_EQ(window.stripNames(), QStringList({"1", "2", "3", "4", "5"}));
    EXPECT_EQ(window.sb1.Value(), 5);
}

TEST(ThumbnailStrip, ScrollPositionsOfTwentyFiles) {
    StripWindow window(20);
    window.strip.initialFill(FitPreview::AsItIs);
    struct Case {
        int value;
        QStringList names;
    };
    for (const Case& c : {Case{1, {"1", "2", "3", "4", "5"}},
                          {4, {"1", "2", "3", "4", "5"}},
                          {7, {"3", "4", "5", "6", "7"}},
                          {9, {"5", "6", "7", "8", "9"}},
                          {10, {"5", "6", "7", "8", "9"}},
                          {21, {"17", "18", "19", "20", ""}},
                          {20, {"17", "18", "19", "20", ""}},
                          {6, {"2", "3", "4", "5", "6"}},
                          {5, {"2", "3", "4", "5", "6"}}}) {
        window.sb1.putValue(c.value);
        EXPECT_EQ(window.stripNames(), c.names) << c.value;
    }
}

TEST(ThumbnailStrip, PutsWhileScrolling) {
    for (const bool fits : {true, false}) {
        StripWindow window(2, fits ? FitPreview::AfterLoad : FitPreview::AsItIs);
        window.sb1.putValue(2);
        QStringList first = window.putsWithoutFolders().filter("thumb(0)");
        QStringList expected{"thumb(0).BackgroundFill=False", "thumb(0).FileName=1.dcm"};
        if (fits) expected << "thumb(0).BestFit=True";
        expected << "thumb(0).ThumbStyle=2"
                 << "thumb(0).BestFit=True";
        EXPECT_EQ(first, expected);
        EXPECT_EQ(window.putsWithoutFolders().filter("thumb(4)"),
                  QStringList({"thumb(4).ThumbIndex=-1", "thumb(4).FileName=", "thumb(4).ThumbStyle=0"}));
    }
}

TEST(ThumbnailStrip, EmptyFolderOnlyRefreshesTheBorders) {
    StripWindow window(0);
    window.sb1.putValue(3);
    EXPECT_EQ(window.journal.entries("thumb"),
              QStringList({"thumb(0).ThumbStyle=0", "thumb(1).ThumbStyle=0", "thumb(2).ThumbStyle=0",
                           "thumb(3).ThumbStyle=0", "thumb(4).ThumbStyle=0"}));
}

TEST(ThumbnailStrip, SixthPreviewDoesNotExist) {
    StripWindow window(6);
    try {
        window.strip.fillPreview(5, FitPreview::AsItIs);
        FAIL() << "no error";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), 340);
        EXPECT_EQ(error.text(), "Control array element '5' doesn't exist");
    }
}

}  // namespace
}  // namespace cinedisc::test
