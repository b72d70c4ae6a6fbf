#include "tests/support/form/RecordingForm1.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// A patient of stills, series of the given file counts in two studies.
struct StillsForm {
    explicit StillsForm(const QList<QList<int>>& studies) : disc({planOf(studies)}), form(disc.path()) {
        form.behaviour.opener.Open_Click();
        form.clickPatient(0);
    }
    static PatientPlan planOf(const QList<QList<int>>& studies) {
        PatientPlan patient{"A", {}};
        int number = 0;
        for (const QList<int>& series : studies) {
            patient.studies.append({QString("Study%1").arg(patient.studies.size() + 1), {}});
            for (const int files : series)
                patient.studies.last().series.append({QString("S%1").arg(++number), QList<int>(files, 1)});
        }
        return patient;
    }
    /// The folders' names of the previews.
    QString shown() const {
        QStringList names;
        for (const auto& preview : form.thumb) names << preview->FileName().section('/', -2, -2);
        return names.join(' ');
    }
    DiscBuilder disc;
    RecordingForm1 form;
};

TEST(StillsStrip, SeriesShownAtEachPosition) {
    // Nine series; S3 and S6 hold no files.
    StillsForm stills({{2, 1, 0, 1}, {3, 0, 1, 1, 1}});
    RecordingForm1& form = stills.form;
    EXPECT_EQ(form.sb1.Max(), 10);
    EXPECT_EQ(form.sb1.Value(), 6);
    for (const auto& [value, shown] : {std::pair{6, "S1 S2 S4 S5 S7"},
                                       {7, "S2 S4 S5 S7 S8"},
                                       {8, "S4 S5 S7 S8 S9"},
                                       {10, "S4 S5 S7 S8 S9"},
                                       {3, "S1 S2 S4 S5 S7"},
                                       {5, "S1 S2 S4 S5 S7"}}) {
        form.sb1.putValue(value);
        EXPECT_EQ(stills.shown(), shown) << value;
    }
    // Only the preview behind the last is cleared.
    form.sb1.putMax(20);
    form.sb1.putValue(13);
    EXPECT_EQ(stills.shown(), "S8 S9  S5 S7");
    EXPECT_EQ(form.thumb[2]->Tag(), "");
    form.behaviour.loader.LoadImage(2);
    EXPECT_TRUE(form.File1.Path().endsWith("S9")) << "an empty preview opens nothing";
    form.behaviour.loader.LoadImage(3);
    EXPECT_EQ(form.ezDicom.FileName(), form.File1.fullPath(0));
    EXPECT_TRUE(form.File1.Path().endsWith("S5"));
    EXPECT_EQ(form.Label1.Caption(), form.File1.Path());
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/3");
    EXPECT_FALSE(form.Timer4.Enabled());
}

TEST(StillsStrip, FolderWithoutStudiesCountsItemsFromZero) {
    StillsForm stills({{1, 1, 1, 1, 1, 1, 1, 1}});
    RecordingForm1& form = stills.form;
    form.dialogs.folder = stills.disc.path({"Dicom", "Patient000", "Study1"});
    DiscBuilder::write(form.dialogs.folder + "/0.dcm", "1");
    form.behaviour.opener.mnuOpen_Click();
    form.sb1.putValue(7);
    EXPECT_EQ(stills.shown(), "S3 S4 S5 S6 S7");
    EXPECT_EQ(form.Label1.Caption(), form.thumb[4]->Tag());
    EXPECT_EQ(form.File1.Path(), form.thumb[4]->Tag());
}

}  // namespace
}  // namespace cinedisc::test
