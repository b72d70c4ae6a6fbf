#include "tests/support/form/RecordingForm1.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// Two studies, series with 1, 4, 5, 6 and 2 runs, then a stills patient and a patient of one run.
struct StepsTest : testing::Test, DiscForm {
    StepsTest()
        : DiscForm(
              {{"Cine",
                {{"Study1", {{"Series1", {9}}, {"Series2", {2, 3, 4, 5}}, {"Series10", {2, 2, 2, 2, 2}}}},
                 {"Study2", {{"Series1", {2, 3, 4, 5, 6, 7}}, {"Series2", {3, 3}}}}}},
               patientOf("Stills", {{1, 1, 1}, {1}}),
               patientOf("One", {{4}})}) {}
    QString shown() const { return form.below(form.ezDicom.FileName()); }
};

TEST_F(StepsTest, SeriesOfACinePatient) {
    form.clickPatient(0);
    constexpr const char *next = "cmdSerNext", *back = "cmdSeriesBack";
    for (const auto& [button, listed, shown, images, strip, sb1] :
         {std::tuple{next, "Study1/Series2", "Study1/Series2/1", "Image : 1/4", "1 2 3 4 ", 1},
          // Five files: the strip moves by one at its end, and the second file opens.
          {next, "Study1/Series10", "Study1/Series10/2", "Image : 2/5", "1 2 3 4 5", 2},
          // Six files: the step ends quietly, the main view stays until a preview is clicked.
          {next, "Study2/Series1", "Study1/Series10/2", "Image : 2/5", "1 2 3 4 5", 2},
          {next, "Study2/Series2", "Study2/Series2/1", "Image : 1/2", "1 2   ", 1},
          {next, "Study1/Series1", "Study1/Series1/1", "Image : 1/1", "1    ", 1},
          {back, "Study2/Series2", "Study2/Series2/1", "Image : 1/2", "1 2   ", 1},
          {back, "Study2/Series1", "Study2/Series2/1", "Image : 1/2", "1 2 3 4 5", 1},
          {back, "Study1/Series10", "Study1/Series10/2", "Image : 2/5", "1 2 3 4 5", 2}}) {
        form.ezDicom.putBestFit(false);
        form.press(button);
        EXPECT_TRUE(form.ezDicom.BestFit()) << listed;
        EXPECT_EQ(form.below(form.File1.Path()), QString("Patient000/") + listed);
        EXPECT_EQ(this->shown(), QString("Patient000/") + shown) << listed;
        EXPECT_EQ(form.lblImg.Caption(), images) << listed;
        EXPECT_EQ(form.names(), QString("Cine | Cine ") + QString(listed).replace('/', ' '));
        EXPECT_EQ(form.strip(), strip) << listed;
        EXPECT_EQ(form.thumb[0]->ThumbStyle(), 2) << listed;
        EXPECT_EQ(form.sb1.Value(), sb1) << listed;
    }
    // Six files leave the range for a continuous cine.
    form.press("cmNext");
    EXPECT_EQ(form.sb1.Max(), 7);
    form.behaviour.loader.LoadImage(4);
    form.Option11.putValue(true);
    for (int i = 0; i < 6; ++i) form.behaviour.cine.Timer4_Timer();
    EXPECT_EQ(form.lblImg.Caption(), "Image : 6/6");
    // With the list elsewhere there is no next series.
    form.File1.putPath(disc.path());
    form.journal.clear();
    form.press(next);
    EXPECT_EQ(form.journal, QStringList());
}

TEST_F(StepsTest, PatientsWrapAndSwitchTheMode) {
    form.clickPatient(0);
    for (const QString each : {"Command2 1 Stills", "cmdStudyNext 2 One", "Command2 0 Cine",
                               "cmdPatBack 2 One", "CmdStudyBack 1 Stills"}) {
        form.press(each.section(' ', 0, 0));
        const int patient = each.section(' ', 1, 1).toInt();
        const QString name = each.section(' ', 2);
        const QString folder = QString("Patient00%1/Study1/Series1").arg(patient);
        EXPECT_EQ(shown(), folder + "/1");
        EXPECT_EQ(form.below(form.File1.Path()), folder);
        EXPECT_EQ(form.names(), QString("%1 | %1 Study1 Series1").arg(name));
        EXPECT_EQ(form.Frame8.Visible(), patient == 1);
        EXPECT_EQ(form.Timer4.Enabled(), patient != 1);
    }
}

TEST_F(StepsTest, StillsKeepWindowAndPolarityAndSeriesLeaveTheStripAlone) {
    form.clickPatient(1);
    const QString strip = form.strip();
    form.ezDicom.putWindowCenter(40.5);
    form.ezDicom.putWindowWidth(400.5);
    form.ezDicom.putPolarity(-1);
    const std::pair<const char*, int> rows[] = {
        {"cmdNextSeries", 2}, {"cmdNextSeries", 3}, {"cmdNextSeries", 1}, {"cmdPreviousSeries", 3}};
    for (const auto& [button, number] : rows) {
        form.press(button);
        EXPECT_EQ(shown(), QString("Patient001/Study1/Series1/%1").arg(number));
        EXPECT_EQ(form.lblSeries.Caption(), QString("Image :%1/3").arg(number));
        EXPECT_EQ(form.ezDicom.WindowCenter(), 40.5);
        EXPECT_EQ(form.ezDicom.WindowWidth(), 400);
        EXPECT_EQ(form.ezDicom.Polarity(), -1);
    }
    form.ezDicom.putWindowWidth(32768);
    form.press("cmdNextSeries");  // the width does not fit: the step ends behind the list position
    EXPECT_EQ(shown(), "Patient001/Study1/Series1/3");
    EXPECT_EQ(form.File1.ListIndex(), 0);
    form.ezDicom.putFileName(folder("missing"));
    form.ezDicom.putWindowCenter(7);
    form.press("cmdNextSeries");
    EXPECT_EQ(form.ezDicom.WindowCenter(), 100) << "a view without a picture has no window to hand on";
    for (const auto& [button, shownNow, place] : {std::tuple{"cmdSerNext", "Series2/1", "Image :1/1"},
                                                  {"cmdNextSeries", "Series2/1", "Image :1/1"},
                                                  {"cmdSerNext", "Series1/1", "Image :1/3"}}) {
        form.ezDicom.putBestFit(false);
        form.press(button);
        EXPECT_EQ(form.ezDicom.BestFit(), QString(button) == "cmdSerNext");
        EXPECT_EQ(shown(), QString("Patient001/Study1/") + shownNow);
        EXPECT_EQ(form.lblSeries.Caption(), place);
        EXPECT_EQ(form.strip(), strip);
    }
}

TEST_F(StepsTest, SeriesOfAFolderThatIsNobodys) {
    form.clickPatient(0);
    const QString study = folder("Patient001/Study1");
    form.openFolder(joinPath(study, "Series1"));  // no series below: nothing matches File1
    form.press("cmdSerNext");
    EXPECT_EQ(shown(), "Patient001/Study1/Series1/1");
    DiscBuilder::write(study + "/0.dcm", "1");
    form.openFolder(study);
    for (const auto& [button, series] : {std::pair{"cmdSerNext", 2}, {"cmdSerNext", 1}, {"cmdSerBack", 2}}) {
        form.press(button);
        EXPECT_EQ(shown(), QString("Patient001/Study1/Series%1/1").arg(series));
    }
    EXPECT_EQ(form.Label6.Caption(), "Series Scroll Bar");
}

TEST_F(StepsTest, NothingToStepEndsQuietly) {
    RecordingForm1 fresh(disc.path());
    for (const char* button : {"cmdSerNext", "cmdNextSeries", "Command2"}) fresh.press(button);
    EXPECT_EQ(fresh.journal, QStringList());
    form.press("cmdSerNext");
    EXPECT_EQ(form.journal, QStringList()) << "no patient is open";
}

}  // namespace
}  // namespace cinedisc::test
