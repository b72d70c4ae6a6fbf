#include "tests/support/form/RecordingForm1.h"
#include "thumbnails/ThumbnailStrip.h"

#include <gmock/gmock.h>

namespace cinedisc::test {
namespace {

/// A window on a folder of single-frame files, its strip wired to its scroll bar.
struct StripWindow : RecordingWindow {
    explicit StripWindow(int files, FitPreview whileScrolling = FitPreview::AfterLoad)
        : disc({patientOf("A", {QList<int>(files, 1)})}), previews(controls, whileScrolling) {
        sb1.onChange = [this] { previews.scrollFolder(); };
        File1.putPath(disc.path({"Dicom", "Patient000", "Study1", "Series1"}));
    }
    DiscBuilder disc;
    ThumbnailStrip previews;
};

TEST(ThumbnailStrip, ShowsFiveFilesFromEachPositionButEveryFifthKeepsThem) {
    for (const int files : {0, 1, 4, 5, 12, 20}) {
        const auto from = [&](int start) {
            QStringList names;
            for (int i = start; i < start + 5; ++i) names << (i < files ? QString::number(i + 1) : "");
            return names.join(' ');
        };
        for (const int before : {1, 29}) {
            StripWindow window(files);
            window.sb1.putMax(30);
            window.sb1.putValue(before);
            window.previews.clear();
            window.previews.initialFill(FitPreview::AsItIs);
            EXPECT_EQ(window.previews.ThumbFillCount(), std::min(files, 4));
            EXPECT_EQ(window.sb1.Max(), files + 1);
            EXPECT_EQ(window.sb1.Value(), std::min(files, 4) + 1);
            QString expected = from(0);
            for (int step = 0; step < 40; ++step) {
                EXPECT_EQ(window.strip(), expected) << window.sb1.Value() << " of " << files;
                const int value = 1 + step * 13 % (files + 1);
                window.sb1.putValue(value);
                if (value % 5 != 0) expected = from(std::max(0, value - 5));
            }
        }
    }
}

TEST(ThumbnailStrip, PutsInOrder) {
    for (const bool fits : {true, false}) {
        StripWindow window(2, fits ? FitPreview::AfterLoad : FitPreview::AsItIs);
        window.puts();
        window.sb1.putValue(2);
        const QStringList all = window.puts();
        const auto of = [&](const char* thumb) {
            return all.filter(thumb).replaceInStrings(thumb, "").join(' ');
        };
        EXPECT_EQ(of("thumb(0)."), QString("BackgroundFill=false FileName=1.dcm ") +
                                       (fits ? "BestFit=true " : "") + "ThumbStyle=2 BestFit=true");
        EXPECT_EQ(of("thumb(4)."), "ThumbIndex=-1 FileName= ThumbStyle=0");
    }
    StripWindow empty(0);
    empty.sb1.putValue(3);
    EXPECT_EQ(empty.puts().filter("ThumbStyle=0").size(), 5);
    EXPECT_THAT([&] { StripWindow(6).previews.fillPreview(5, FitPreview::AsItIs); },
                testing::ThrowsMessage<RunTimeError>("340: Control array element '5' doesn't exist"));
}

/// A patient of stills whose series S1, S2 ... hold so many files, in two studies.
struct StillsForm : DiscForm {
    StillsForm(const QList<int>& first, const QList<int>& second)
        : DiscForm({{"A", {studyOf("Study1", 1, first), studyOf("Study2", int(first.size()) + 1, second)}}}) {
        form.clickPatient(0);
    }
    static StudyPlan studyOf(const QString& name, int number, const QList<int>& fileCounts) {
        StudyPlan study{name, {}};
        for (const int files : fileCounts)
            study.series.append({QString("S%1").arg(number++), QList<int>(files, 1)});
        return study;
    }
    /// The folders' names of the previews.
    QString shown() const {
        QStringList names;
        for (const auto& preview : form.thumb)
            names << QDir::fromNativeSeparators(preview->FileName()).section('/', -2, -2);
        return names.join(' ');
    }
};

TEST(StillsStrip, ShowsTheSeriesOfEachPosition) {
    // S3 and S6 hold no files.
    StillsForm stills({2, 1, 0, 1}, {3, 0, 1, 1, 1});
    RecordingForm1& form = stills.form;
    EXPECT_EQ(form.sb1.Max(), 10);
    EXPECT_EQ(form.sb1.Value(), 6);
    const std::pair<int, const char*> rows[] = {{6, "S1 S2 S4 S5 S7"}, {7, "S2 S4 S5 S7 S8"},
                                                {8, "S4 S5 S7 S8 S9"}, {10, "S4 S5 S7 S8 S9"},
                                                {3, "S1 S2 S4 S5 S7"}, {5, "S1 S2 S4 S5 S7"}};
    for (const auto& [value, shown] : rows) {
        form.sb1.putValue(value);
        EXPECT_EQ(stills.shown(), shown) << value;
    }
    form.puts();
    form.sb1.putValue(3);
    EXPECT_EQ(form.puts().filter("thumb(1)").join(' '),
              "thumb(1).BackgroundFill=false thumb(1).FileName=1.dcm thumb(1).BestFit=true thumb(1).Tag=S2");
    // Only the preview behind the last is cleared.
    form.sb1.putMax(20);
    form.sb1.putValue(13);
    EXPECT_EQ(stills.shown(), "S8 S9  S5 S7");
    EXPECT_EQ(form.thumb[2]->Tag(), "");
    form.behaviour.loader.LoadImage(2);
    EXPECT_TRUE(form.File1.Path().endsWith("S9")) << "an empty preview opens nothing";
    form.behaviour.loader.LoadImage(3);
    EXPECT_TRUE(form.ezDicom.BestFit());
    EXPECT_EQ(form.below(form.ezDicom.FileName()), "Patient000/Study2/S5/1");
    EXPECT_EQ(form.Label1.Caption(), form.File1.Path());
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/3");
    EXPECT_FALSE(form.Timer4.Enabled());
}

TEST(StillsStrip, CountsTheItemsOfAFolderWithoutStudiesFromZero) {
    StillsForm stills({1, 1, 1, 1, 1, 1, 1, 1}, {});
    RecordingForm1& form = stills.form;
    const QString study = stills.folder("Patient000/Study1");
    DiscBuilder::write(study + "/0.dcm", "1");
    form.openFolder(study);
    form.sb1.putValue(7);
    EXPECT_EQ(stills.shown(), "S3 S4 S5 S6 S7");
    EXPECT_EQ(form.Label1.Caption(), form.thumb[4]->Tag());
    EXPECT_EQ(form.File1.Path(), form.thumb[4]->Tag());
}

}  // namespace
}  // namespace cinedisc::test
