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
        int files, fillCount, value;
        const char* names;
    };
    for (const Case& c : {Case{0, 0, 1, "    "},
                          {1, 1, 2, "1    "},
                          {4, 4, 5, "1 2 3 4 "},
                          {5, 4, 5, "1 2 3 4 5"},
                          {12, 4, 5, "1 2 3 4 5"}}) {
        // Wherever the strip stood.
        for (const int before : {1, 29}) {
            StripWindow window(c.files);
            window.sb1.putMax(30);
            window.sb1.putValue(before);
            window.strip.clear();
            window.strip.initialFill(FitPreview::AsItIs);
            EXPECT_EQ(window.strip.ThumbFillCount(), c.fillCount) << c.files;
            EXPECT_EQ(window.sb1.Max(), c.files + 1);
            EXPECT_EQ(window.sb1.Value(), c.value) << c.files;
            EXPECT_EQ(window.stripNames().join(' '), c.names);
        }
    }
}

TEST(ThumbnailStrip, ScrollPositionsOfTwentyFiles) {
    StripWindow window(20);
    window.strip.initialFill(FitPreview::AsItIs);
    for (const auto& [value, names] : {std::pair{4, "1 2 3 4 5"},
                                       {7, "3 4 5 6 7"},
                                       {9, "5 6 7 8 9"},
                                       {10, "5 6 7 8 9"},
                                       {21, "17 18 19 20 "},
                                       {20, "17 18 19 20 "},
                                       {6, "2 3 4 5 6"},
                                       {5, "2 3 4 5 6"}}) {
        window.sb1.putValue(value);
        EXPECT_EQ(window.stripNames().join(' '), names) << value;
    }
}

TEST(ThumbnailStrip, PutsWhileScrolling) {
    for (const bool fits : {true, false}) {
        StripWindow window(2, fits ? FitPreview::AfterLoad : FitPreview::AsItIs);
        window.sb1.putValue(2);
        const auto puts = [&](const char* thumb) {
            return window.putsWithoutFolders().filter(thumb).replaceInStrings(thumb, "").join(' ');
        };
        EXPECT_EQ(puts("thumb(0)."), QString("BackgroundFill=False FileName=1.dcm ") +
                                         (fits ? "BestFit=True " : "") + "ThumbStyle=2 BestFit=True");
        EXPECT_EQ(puts("thumb(4)."), "ThumbIndex=-1 FileName= ThumbStyle=0");
    }
    StripWindow empty(0);
    empty.sb1.putValue(3);
    EXPECT_EQ(empty.journal.entries("thumb").filter("ThumbStyle=0").size(), 5);
}

TEST(ThumbnailStrip, SixthPreviewDoesNotExist) {
    StripWindow window(6);
    try {
        window.strip.fillPreview(5, FitPreview::AsItIs);
        FAIL() << "no error";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.text(), "Control array element '5' doesn't exist");
    }
}

}  // namespace
}  // namespace cinedisc::test
