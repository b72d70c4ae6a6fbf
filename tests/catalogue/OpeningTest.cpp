#include "tests/support/form/RecordingForm1.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

struct OpeningTest : testing::Test, DiscForm {
    OpeningTest()
        : DiscForm({patientOf("Cine A", {{2, 3}, {5}}), patientOf("Stills", {{1, 1}, {1}, {1, 1, 1}})}) {}
    QString shown() const { return form.below(form.ezDicom.FileName()); }
};

TEST_F(OpeningTest, ShowsThePanelOfWhatTheFirstFileHolds) {
    // A slow disc (-1) makes no stills of a cine.
    for (const auto& [frames, stills] : {std::pair(0, true), {1, true}, {2, false}, {-1, false}}) {
        const DiscForm opened({patientOf("S", {{frames}, {1, 1}})});
        EXPECT_EQ(opened.form.place().StillsMode, stills) << frames;
        EXPECT_EQ(opened.form.sb1.Max(), stills ? 3 : 2);
        EXPECT_EQ(opened.form.below(opened.form.File1.Path()), "Patient000/Study1/Series1");
        EXPECT_EQ(opened.form.place().CurrentFolder.pathOrEmpty(), opened.folder("Patient000"));
    }
}

TEST_F(OpeningTest, MissingCatalogueAsksForAFolder) {
    QFile::remove(disc.path({"CD.xml"}));
    const QString question = "Patient Lists Not Available On CD,Do You Want to Select Images From CD";
    form.press("Open");
    EXPECT_EQ(form.dialogs.asked, QStringList({question}));
    EXPECT_EQ(form.journal, QStringList());
    form.dialogs.yes = true;
    form.dialogs.folder = folder("Patient000/Study1/Series1");
    form.press("mnuOpenCD");
    EXPECT_EQ(form.dialogs.asked, QStringList({question, question, "Dicom"}));
    EXPECT_EQ(shown(), "Patient000/Study1/Series1/1");
}

TEST_F(OpeningTest, FindsTheDiscWhateverItsLetterCase) {
    QDir root(disc.path());
    for (const auto& [name, renamed] :
         {std::pair{"CD.xml", "cd.XML"}, {"Dicom/Patient000", "Dicom/PATIENT000"}, {"Dicom", "dicom"}})
        ASSERT_TRUE(root.rename(name, "between") && root.rename("between", renamed));
    RecordingForm1 fresh(disc.path());
    fresh.press("Open");
    fresh.clickPatient(0);
    EXPECT_EQ(fresh.ezDicom.FileName(), disc.path({"dicom", "PATIENT000", "Study1", "Series1", "1.dcm"}));
}

TEST_F(OpeningTest, AStillsPatientOpensAtItsFirstSeries) {
    form.clickPatient(0);
    EXPECT_EQ(form.behaviour.strip.ThumbFillCount(), 2);
    form.TreeView1.expanded = 1;
    form.clickPatient(1);
    EXPECT_EQ(form.TreeView1.expanded, 0);
    EXPECT_FALSE(form.Timer4.Enabled());
    EXPECT_EQ(shown(), "Patient001/Study1/Series1/1");
    EXPECT_EQ(form.sb1.Max(), 4);
    EXPECT_EQ(form.sb1.Value(), 4);
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/2");
    EXPECT_EQ(form.thumb[2]->Tag(), folder("Patient001/Study1/Series3"));
    EXPECT_EQ(form.thumb[3]->FileName(), "");
    form.journal.clear();
    for (const int node : {2, 3, 4}) form.clickNode(node);
    EXPECT_EQ(form.journal, QStringList()) << "studies, series and images open nothing";
}

TEST_F(OpeningTest, PutsInOrder) {
    form.clickPatient(0);
    const QString puts = form.puts().join(", ");
    QString previews;
    for (int i = 0; i < 2; ++i)
        previews += QString(
                        "thumb(%1).BackgroundFill=false, thumb(%1).BestFit=true, thumb(%1).FileName=%2.dcm, "
                        "thumb(%1).BestFit=true, ")
                        .arg(i)
                        .arg(i + 1);
    qsizetype at = 0;
    // What was shown before is gone before the name comes.
    for (const QString& part :
         {QString("Timer4.Enabled=false, thumb(0).ThumbIndex=-1, thumb(0).ThumbStyle=0, thumb(0).Tag=, "),
          QString("ezDicom.FileName=, "),
          QString("Label5.Caption=Cine A, Label13.Caption=Cine A, thumb(0).ThumbIndex=-1"),
          "ezTest.FileName=1.dcm, Frame8.Visible=false, Frame9.Visible=true, sb1.Max=3, "
          "ezDicom.BestFit=true, " +
              previews + "sb1.Value=3, thumb(0).BackgroundFill=false",
          QString("ezDicom.FileName=1.dcm, ezDicom.BestFit=true, sb1.Value=1"),
          QString("lblImg.Caption=Image : 1/2, Timer4.Enabled=true, Label6.Caption=Cine A Study1 Series1, "
                  "Label15.Caption=Cine A Study1 Series1, FraTree.Visible=false")}) {
        at = puts.indexOf(part, at);
        ASSERT_GE(at, 0) << qPrintable(part) << " in " << qPrintable(puts);
    }
}

TEST_F(OpeningTest, AFolderOfRunsPlaysAndOneOfStillsShowsItsSeriesOrItsOwnFirstFile) {
    form.clickPatient(1);
    form.journal.clear();
    form.openFolder("");
    EXPECT_EQ(form.journal, QStringList()) << "cancelled";
    form.openFolder(folder("Patient000/Study1/Series1"));
    EXPECT_EQ(shown(), "Patient000/Study1/Series1/1");
    EXPECT_TRUE(form.Timer4.Enabled());
    EXPECT_EQ(form.names(), "Study Scroll Bar | Series Scroll Bar");
    EXPECT_FALSE(form.place().HasStudyFolders);
    EXPECT_EQ(form.lblImg.Caption(), "Image : 1/2");
    form.clickPatient(0);
    EXPECT_TRUE(form.place().HasStudyFolders);

    const QString study = folder("Patient001/Study1");
    DiscBuilder::write(study + "/0.dcm", "1");
    form.openFolder(study);
    EXPECT_FALSE(form.Timer4.Enabled());
    EXPECT_EQ(form.sb1.Max(), 4);
    EXPECT_EQ(form.sb1.Value(), 1);
    EXPECT_EQ(shown(), "Patient001/Study1/Series1/1");
    EXPECT_EQ(form.thumb[2]->Tag(), joinPath(study, "Series3"));
    EXPECT_EQ(form.thumb[2]->ThumbStyle(), 2);
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/2");
    QDir(study).mkdir("Series3/empty");
    form.openFolder(joinPath(study, "Series3"));
    EXPECT_EQ(form.below(form.File1.Path()), "Patient001/Study1/Series3");
    EXPECT_EQ(shown(), "Patient001/Study1/Series3/1");
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/3");
    EXPECT_EQ(form.sb1.Max(), 2);
}

}  // namespace
}  // namespace cinedisc::test
