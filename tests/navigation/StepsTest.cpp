#include "tests/support/form/RecordingForm1.h"

#include <QDir>
#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// Two studies, series with 1, 4, 5, 6 and 2 runs, then a stills patient and a patient of one run.
const QList<PatientPlan> mixedDisc{
    {"Cine",
     {{"Study1", {{"Series1", {9}}, {"Series2", {2, 3, 4, 5}}, {"Series10", {2, 2, 2, 2, 2}}}},
      {"Study2", {{"Series1", {2, 3, 4, 5, 6, 7}}, {"Series2", {3, 3}}}}}},
    patientOf("Stills", {{1, 1, 1}, {1}}),
    patientOf("One", {{4}}),
};

class StepsTest : public testing::Test {
  protected:
    explicit StepsTest(const QList<PatientPlan>& patients = mixedDisc) : disc(patients), form(disc.path()) {
        form.behaviour.opener.Open_Click();
    }

    void press(const QString& button) {
        auto& b = form.behaviour;
        if (button == "SerNext") b.seriesStepper.cmdSerNext_Click();
        if (button == "SerBack") b.seriesStepper.cmdSerBack_Click();
        if (button == "PatNext") b.patientStepper.Command2_Click();
        if (button == "PatBack") b.patientStepper.cmdPatBack_Click();
        if (button == "StillNext") b.stillStepper.cmdNextSeries_Click();
        if (button == "StillBack") b.stillStepper.cmdPreviousSeries_Click();
    }
    /// Folder and file of a path on the disc: "Patient000/Study1/Series1/1".
    QString onDisc(const QString& path) const {
        QString name = path.mid(disc.path({"Dicom"}).size() + 1);
        name.replace(QDir::separator(), u'/');
        return name.endsWith(".dcm") ? name.chopped(4) : name;
    }

    DiscBuilder disc;
    RecordingForm1 form;
};

TEST_F(StepsTest, SeriesStepsOfACinePatient) {
    form.clickPatient(0);
    struct Step {
        const char* button;
        const char* file1;
        const char* shown;
        const char* imageLabel;
        const char* seriesName;
        QString strip;
        int sb1;
    };
    const QString one = "Patient000/Study1/Series1", four = "Patient000/Study1/Series2";
    for (const Step& step : {
             Step{"SerNext", "Patient000/Study1/Series2", "Patient000/Study1/Series2/1", "Image : 1/4",
                  "Cine Study1 Series2", "1 2 3 4 ", 1},
             // Five files: the strip moves by one at its end, and the second file opens.
             {"SerNext", "Patient000/Study1/Series10", "Patient000/Study1/Series10/2", "Image : 2/5",
              "Cine Study1 Series10", "1 2 3 4 5", 2},
             // Six files: the step ends quietly, the main view stays until a preview is clicked.
             {"SerNext", "Patient000/Study2/Series1", "Patient000/Study1/Series10/2", "Image : 2/5",
              "Cine Study2 Series1", "1 2 3 4 5", 2},
             {"SerNext", "Patient000/Study2/Series2", "Patient000/Study2/Series2/1", "Image : 1/2",
              "Cine Study2 Series2", "1 2   ", 1},
             {"SerNext", "Patient000/Study1/Series1", "Patient000/Study1/Series1/1", "Image : 1/1",
              "Cine Study1 Series1", "1    ", 1},
             {"SerBack", "Patient000/Study2/Series2", "Patient000/Study2/Series2/1", "Image : 1/2",
              "Cine Study2 Series2", "1 2   ", 1},
             {"SerBack", "Patient000/Study2/Series1", "Patient000/Study2/Series2/1", "Image : 1/2",
              "Cine Study2 Series1", "1 2 3 4 5", 1},
             {"SerBack", "Patient000/Study1/Series10", "Patient000/Study1/Series10/2", "Image : 2/5",
              "Cine Study1 Series10", "1 2 3 4 5", 2},
         }) {
        press(step.button);
        EXPECT_EQ(onDisc(form.File1.Path()), step.file1);
        EXPECT_EQ(onDisc(form.ezDicom.FileName()), step.shown) << step.file1;
        EXPECT_EQ(form.lblImg.Caption(), step.imageLabel) << step.file1;
        EXPECT_EQ(form.Label6.Caption(), step.seriesName);
        EXPECT_EQ(form.stripNames().join(' '), step.strip) << step.file1;
        EXPECT_EQ(form.sb1.Value(), step.sb1) << step.file1;
    }
}

TEST_F(StepsTest, SixFilesLeaveTheRangeForAContinuousCine) {
    form.clickPatient(0);
    for (int i = 0; i < 3; ++i) press("SerNext");
    ASSERT_EQ(form.File1.ListCount(), 6);
    EXPECT_EQ(form.sb1.Max(), 7);
    form.behaviour.loader.LoadImage(4);
    form.Option11.putValue(true);
    for (int i = 0; i < 6; ++i) form.behaviour.cine.Timer4_Timer();
    EXPECT_EQ(form.lblImg.Caption(), "Image : 6/6");
}

TEST_F(StepsTest, PatientStepsWrapAndSwitchTheMode) {
    form.clickPatient(0);
    struct Step {
        const char* button;
        const char* shown;
        const char* name;
        const char* series;
        bool stills;
    };
    for (const Step& step :
         {Step{"PatNext", "Patient001/Study1/Series1/1", "Stills", "Stills Study1 Series1", true},
          {"PatNext", "Patient002/Study1/Series1/1", "One", "One Study1 Series1", false},
          {"PatNext", "Patient000/Study1/Series1/1", "Cine", "Cine Study1 Series1", false},
          {"PatBack", "Patient002/Study1/Series1/1", "One", "One Study1 Series1", false},
          {"PatBack", "Patient001/Study1/Series1/1", "Stills", "Stills Study1 Series1", true}}) {
        press(step.button);
        EXPECT_EQ(onDisc(form.ezDicom.FileName()), step.shown);
        EXPECT_EQ(form.Label5.Caption(), step.name);
        EXPECT_EQ(form.Label13.Caption(), step.name);
        EXPECT_EQ(form.Label15.Caption(), step.series);
        EXPECT_EQ(form.Frame8.Visible(), step.stills);
        EXPECT_EQ(form.Frame9.Visible(), !step.stills);
        EXPECT_EQ(form.Timer4.Enabled(), !step.stills);
        EXPECT_EQ(onDisc(form.File1.Path()), QString(step.shown).section('/', 0, 2));
    }
}

TEST_F(StepsTest, StillsStepsKeepWindowAndPolarity) {
    form.clickPatient(1);
    form.ezDicom.putWindowCenter(40.5);
    form.ezDicom.putWindowWidth(400.5);
    form.ezDicom.putPolarity(-1);
    struct Step {
        const char* button;
        const char* shown;
        const char* label;
    };
    for (const Step& step : {Step{"StillNext", "Patient001/Study1/Series1/2", "Image :2/3"},
                             {"StillNext", "Patient001/Study1/Series1/3", "Image :3/3"},
                             {"StillNext", "Patient001/Study1/Series1/1", "Image :1/3"},
                             {"StillBack", "Patient001/Study1/Series1/3", "Image :3/3"}}) {
        press(step.button);
        EXPECT_EQ(onDisc(form.ezDicom.FileName()), step.shown);
        EXPECT_EQ(form.lblSeries.Caption(), step.label);
        EXPECT_EQ(form.ezDicom.WindowCenter(), 40.5);
        EXPECT_EQ(form.ezDicom.WindowWidth(), 400);
        EXPECT_EQ(form.ezDicom.Polarity(), -1);
    }
    form.ezDicom.putWindowWidth(32768);
    press("StillNext");  // the width does not fit: the step ends behind the list position
    EXPECT_EQ(onDisc(form.ezDicom.FileName()), "Patient001/Study1/Series1/3");
    EXPECT_EQ(form.File1.ListIndex(), 0);
}

TEST_F(StepsTest, StillsSeriesStepsLeaveTheStripAlone) {
    form.clickPatient(1);
    const QStringList strip = form.stripNames();
    press("SerNext");
    EXPECT_EQ(onDisc(form.ezDicom.FileName()), "Patient001/Study1/Series2/1");
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/1");
    EXPECT_EQ(form.stripNames(), strip);
    press("StillNext");
    EXPECT_EQ(onDisc(form.ezDicom.FileName()), "Patient001/Study1/Series2/1");
    press("SerNext");
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/3");
}

TEST_F(StepsTest, StepsWithNothingToStepEndQuietly) {
    RecordingForm1 fresh(disc.path());
    fresh.behaviour.seriesStepper.cmdSerNext_Click();
    fresh.behaviour.patientStepper.Command2_Click();
    fresh.behaviour.stillStepper.cmdNextSeries_Click();
    EXPECT_EQ(fresh.journal.entries(), QStringList());

    form.clickPatient(0);
    form.File1.putPath(disc.path());
    form.journal.clear();
    press("SerNext");
    EXPECT_EQ(form.journal.entries(), QStringList());
}

TEST_F(StepsTest, FolderOfSeriesWithoutACatalogueEntry) {
    form.clickPatient(0);
    form.dialogs.folder = disc.path({"Dicom", "Patient001", "Study1", "Series1"});
    form.behaviour.opener.mnuOpen_Click();  // stills, no series below: nothing matches File1
    press("SerNext");
    EXPECT_EQ(onDisc(form.ezDicom.FileName()), "Patient001/Study1/Series1/1");
    DiscBuilder::write(disc.path({"Dicom", "Patient001", "Study1", "0.dcm"}), "1");
    form.dialogs.folder = disc.path({"Dicom", "Patient001", "Study1"});
    form.behaviour.opener.mnuOpen_Click();
    for (const char* shown : {"Patient001/Study1/Series2/1", "Patient001/Study1/Series1/1"}) {
        press("SerNext");
        EXPECT_EQ(onDisc(form.ezDicom.FileName()), shown);
    }
    press("SerBack");
    EXPECT_EQ(onDisc(form.ezDicom.FileName()), "Patient001/Study1/Series2/1");
    EXPECT_EQ(form.Label6.Caption(), "Series Scroll Bar");
}

}  // namespace
}  // namespace cinedisc::test
