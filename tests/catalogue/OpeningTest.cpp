#include "tests/support/form/RecordingForm1.h"

#include <QDir>
#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

struct OpenedDisc {
    explicit OpenedDisc(const QList<PatientPlan>& patients = {patientOf("Cine A", {{30, 20}, {5}}),
                                                              patientOf("Stills", {{1, 1}, {1}, {1, 1, 1}})})
        : disc(patients), form(disc.path()) {
        form.behaviour.opener.Open_Click();
    }
    QString series(const char* patient, const char* name) const {
        return disc.path({"Dicom", patient, "Study1", name});
    }
    void openFolder(const QString& folder) {
        form.dialogs.folder = folder;
        form.behaviour.opener.mnuOpen_Click();
    }
    const DiscPosition& place() const { return form.behaviour.place.position(); }

    DiscBuilder disc;
    RecordingForm1 form;
};

TEST(OpenCommand, ShowsThePanelOfWhatTheFirstFileHolds) {
    // A slow disc (-1) makes no stills of a cine.
    for (const auto& [frames, stills] : {std::pair(0, true), {1, true}, {2, false}, {-1, false}}) {
        OpenedDisc opened({patientOf("S", {{frames}, {1, 1}})});
        const RecordingForm1& form = opened.form;
        EXPECT_EQ(opened.place().StillsMode, stills) << frames;
        EXPECT_EQ(form.Frame8.Visible(), stills) << frames;
        EXPECT_EQ(form.Frame9.Visible(), !stills) << frames;
        EXPECT_EQ(form.sb1.Max(), stills ? 3 : 2);
        EXPECT_EQ(form.File1.Path(), opened.series("Patient000", "Series1"));
        EXPECT_EQ(opened.place().CurrentFolder.pathOrEmpty(), opened.disc.path({"Dicom", "Patient000"}));
        EXPECT_EQ(opened.place().PatientsFolder.pathOrEmpty(), opened.disc.path({"Dicom"}));
    }
}

TEST(OpenCommand, MissingCatalogueAsksForAFolder) {
    DiscBuilder disc({patientOf("A", {{3, 4}})});
    QFile::remove(disc.path({"CD.xml"}));
    RecordingForm1 form(disc.path());
    const QString question = "Patient Lists Not Available On CD,Do You Want to Select Images From CD";
    form.behaviour.opener.Open_Click();
    EXPECT_EQ(form.dialogs.asked, QStringList({question}));
    EXPECT_EQ(form.journal.entries(), QStringList());
    form.dialogs.yes = true;
    form.dialogs.folder = disc.path({"Dicom", "Patient000", "Study1", "Series1"});
    form.behaviour.opener.Open_Click();
    EXPECT_EQ(form.dialogs.asked, QStringList({question, question, "Dicom"}));
    EXPECT_EQ(form.ezDicom.FileName(), form.File1.fullPath(0));
}

TEST(OpenCommand, FindsTheDiscWhateverItsLetterCase) {
    DiscBuilder disc({patientOf("A", {{3, 4}})});
    QDir root(disc.path());
    ASSERT_TRUE(root.rename("CD.xml", "cd.XML"));
    ASSERT_TRUE(root.rename("Dicom/Patient000", "Dicom/PATIENT000"));
    ASSERT_TRUE(root.rename("Dicom", "dicom"));
    RecordingForm1 form(disc.path());
    form.behaviour.opener.Open_Click();
    form.clickPatient(0);
    EXPECT_EQ(form.ezDicom.FileName(), disc.path({"dicom", "PATIENT000", "Study1", "Series1", "1.dcm"}));
}

TEST(TreeClick, OpensAStillsPatientAtItsFirstSeries) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    form.clickPatient(0);
    EXPECT_EQ(form.behaviour.strip.ThumbFillCount(), 2);
    form.clickPatient(1);
    EXPECT_FALSE(form.Timer4.Enabled());
    EXPECT_EQ(form.ezDicom.FileName(), opened.series("Patient001", "Series1") + QDir::separator() + "1.dcm");
    EXPECT_EQ(form.sb1.Max(), 4);
    EXPECT_EQ(form.sb1.Value(), 4);
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/2");
    EXPECT_EQ(form.thumb[2]->Tag(), opened.series("Patient001", "Series3"));
    EXPECT_EQ(form.thumb[3]->FileName(), "");
    form.journal.clear();
    for (const int node : {2, 3, 4}) form.clickNode(node);
    EXPECT_EQ(form.journal.entries(), QStringList()) << "studies, series and images open nothing";
}

TEST(TreeClick, PutsOfAnOpeningInOrder) {
    OpenedDisc opened({patientOf("A", {{2, 3}})});
    opened.form.journal.clear();
    opened.form.clickPatient(0);
    const QString puts = opened.form.putsWithoutFolders().join(", ");
    // What was shown before is gone before the name comes.
    QString preview;
    for (int i = 0; i < 2; ++i)
        preview += QString(
                       "thumb(%1).BackgroundFill=False, thumb(%1).BestFit=True, "
                       "thumb(%1).FileName=%2.dcm, thumb(%1).BestFit=True, ")
                       .arg(i)
                       .arg(i + 1);
    qsizetype at = 0;
    for (const QString& part :
         {QString("ezDicom.FileName=, "),
          QString("Label5.Caption=A, Label13.Caption=A, thumb(0).ThumbIndex=-1"),
          "ezTest.FileName=1.dcm, Frame8.Visible=False, Frame9.Visible=True, sb1.Max=3, "
          "ezDicom.BestFit=True, " +
              preview + "sb1.Value=3, thumb(0).BackgroundFill=False",
          QString("ezDicom.FileName=1.dcm, ezDicom.BestFit=True, sb1.Value=1"),
          QString("lblImg.Caption=Image : 1/2, Timer4.Enabled=True, Label6.Caption=A Study1 Series1, "
                  "Label15.Caption=A Study1 Series1, FraTree.Visible=False")}) {
        at = puts.indexOf(part, at);
        ASSERT_GE(at, 0) << qPrintable(part) << " in " << qPrintable(puts);
    }
    EXPECT_TRUE(puts.endsWith("FraTree.Visible=False"));
}

TEST(FolderCommand, CineFolderPlaysItsFirstFile) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    form.clickPatient(1);
    form.journal.clear();
    opened.openFolder("");
    EXPECT_EQ(form.journal.entries(), QStringList()) << "cancelled";
    opened.openFolder(opened.series("Patient000", "Series1"));
    EXPECT_EQ(form.ezDicom.FileName(), form.File1.fullPath(0));
    EXPECT_TRUE(form.Timer4.Enabled());
    EXPECT_TRUE(form.Frame9.Visible());
    EXPECT_EQ(form.Label5.Caption(), "Study Scroll Bar");
    EXPECT_EQ(form.Label6.Caption(), "Series Scroll Bar");
    EXPECT_FALSE(opened.place().HasStudyFolders);
    EXPECT_EQ(form.lblImg.Caption(), "Image : 1/2");
    form.clickPatient(0);
    EXPECT_TRUE(opened.place().HasStudyFolders);
}

TEST(FolderCommand, StillsFolderShowsItsSeriesOrItsOwnFirstFile) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    form.clickPatient(0);
    const QString study = opened.disc.path({"Dicom", "Patient001", "Study1"});
    DiscBuilder::write(study + "/0.dcm", "1");
    opened.openFolder(study);
    EXPECT_FALSE(form.Timer4.Enabled());
    EXPECT_EQ(form.sb1.Max(), 4);
    EXPECT_EQ(form.sb1.Value(), 1);
    EXPECT_EQ(form.ezDicom.FileName(), opened.series("Patient001", "Series1") + QDir::separator() + "1.dcm");
    EXPECT_EQ(form.thumb[2]->Tag(), opened.series("Patient001", "Series3"));
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/2");
    const QString folder = opened.series("Patient001", "Series3");
    QDir(folder).mkdir("empty");
    opened.openFolder(folder);
    EXPECT_EQ(form.File1.Path(), folder);
    EXPECT_EQ(form.ezDicom.FileName(), form.File1.fullPath(0));
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/3");
    EXPECT_EQ(form.sb1.Max(), 2);
}

}  // namespace
}  // namespace cinedisc::test
