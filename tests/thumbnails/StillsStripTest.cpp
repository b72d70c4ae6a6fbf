#include "tests/support/form/RecordingForm1.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// A patient of two studies with stills: series of the given file counts.
PatientPlan stills(const QList<int>& first, const QList<int>& second) {
    PatientPlan patient{"A", {{"Study1", {}}, {"Study2", {}}}};
    int number = 0;
    for (const int files : first) {
        patient.studies[0].series.append({QString("S%1").arg(++number), QList<int>(files, 1)});
    }
    for (const int files : second) {
        patient.studies[1].series.append({QString("S%1").arg(++number), QList<int>(files, 1)});
    }
    return patient;
}

/// The folders' names of the filled previews.
QString shownSeries(const RecordingForm1& form) {
    QStringList names;
    for (const auto& preview : form.thumb) names << preview->FileName().section('/', -2, -2);
    return names.join(' ');
}

struct StillsForm {
    explicit StillsForm(const PatientPlan& patient) : disc({patient}), form(disc.path()) {
        form.behaviour.opener.Open_Click();
        form.clickPatient(0);
    }
    DiscBuilder disc;
    RecordingForm1 form;
};

TEST(StillsStrip, SeriesShownAtEachPosition) {
    // Nine series; S3 and S6 hold no files.
    StillsForm stillsForm(stills({2, 1, 0, 1}, {3, 0, 1, 1, 1}));
    RecordingForm1& form = stillsForm.form;
    EXPECT_EQ(form.sb1.Max(), 10);
    EXPECT_EQ(form.sb1.Value(), 6);
    EXPECT_EQ(shownSeries(form), "S1 S2 S4 S5 S7");
    struct Case {
        int value;
        const char* shown;
    };
    for (const Case& c : {Case{7, "S2 S4 S5 S7 S8"},
                          {8, "S4 S5 S7 S8 S9"},
                          {9, "S4 S5 S7 S8 S9"},
                          {10, "S4 S5 S7 S8 S9"},
                          {3, "S1 S2 S4 S5 S7"},
                          {5, "S1 S2 S4 S5 S7"}}) {
        form.sb1.putValue(c.value);
        EXPECT_EQ(shownSeries(form), c.shown) << c.value;
    }
}

TEST(StillsStrip, OnlyThePreviewBehindTheLastIsCleared) {
    StillsForm stillsForm(stills({1, 1, 1, 1, 1, 1, 1}, {}));
    RecordingForm1& form = stillsForm.form;
    form.sb1.putMax(20);
    form.sb1.putValue(11);  // from the sixth series on two are left
    EXPECT_EQ(shownSeries(form), "S6 S7  S4 S5");
    EXPECT_EQ(form.thumb[2]->Tag(), "");
}

TEST(StillsStrip, FolderWithoutStudiesCountsItemsFromZero) {
    StillsForm stillsForm(stills({1, 1, 1, 1, 1, 1, 1, 1}, {}));
    RecordingForm1& form = stillsForm.form;
    const QString study = stillsForm.disc.path({"Dicom", "Patient000", "Study1"});
    DiscBuilder::write(study + "/0.dcm", "1");
    form.dialogs.folder = study;
    form.behaviour.opener.mnuOpen_Click();
    form.sb1.putValue(7);
    EXPECT_EQ(shownSeries(form), "S3 S4 S5 S6 S7");
    EXPECT_EQ(form.Label1.Caption(), form.thumb[4]->Tag());
    EXPECT_EQ(form.File1.Path(), form.thumb[4]->Tag());
}

TEST(StillsStrip, ClickOpensTheSeriesOfThePreview) {
    StillsForm stillsForm(stills({2, 4, 1}, {}));
    RecordingForm1& form = stillsForm.form;
    EXPECT_FALSE(form.Timer4.Enabled());
    form.behaviour.loader.LoadImage(1);
    EXPECT_EQ(form.ezDicom.FileName(), form.File1.fullPath(0));
    EXPECT_TRUE(form.File1.Path().endsWith("S2"));
    EXPECT_EQ(form.Label1.Caption(), form.File1.Path());
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/4");
    EXPECT_EQ(form.File1.ListIndex(), 0);
    EXPECT_FALSE(form.Timer4.Enabled());
    const QString shown = form.ezDicom.FileName();
    form.behaviour.loader.LoadImage(4);  // empty
    EXPECT_EQ(form.ezDicom.FileName(), shown);
}

}  // namespace
}  // namespace cinedisc::test
