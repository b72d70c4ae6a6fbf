#include "tests/support/form/RecordingForm1.h"

#include <QDir>
#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

const QList<PatientPlan> twoCinePatientsAndStills{patientOf("Cine A", {{30, 20, 10}, {5}}),
                                                  patientOf("Cine B", {{7, 8, 9, 10, 11, 12, 13}}),
                                                  patientOf("Stills C", {{1, 1}, {1}, {1, 1, 1}})};

struct OpenedDisc {
    explicit OpenedDisc(const QList<PatientPlan>& patients = twoCinePatientsAndStills)
        : disc(patients), form(disc.path()) {
        form.behaviour.opener.Open_Click();
    }
    QString series(const char* patient, const char* name) const {
        return disc.path({"Dicom", patient, "Study1", name});
    }
    DiscBuilder disc;
    RecordingForm1 form;
};

TEST(OpenCommand, ProbesTheFirstPatientAndFillsTheTree) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    EXPECT_EQ(form.TreeView1.nodeCount(), 3 + 3 + 6 + 17);
    EXPECT_FALSE(form.behaviour.place.position().StillsMode);
    EXPECT_TRUE(form.Frame9.Visible());
    EXPECT_FALSE(form.Frame8.Visible());
    EXPECT_TRUE(form.behaviour.place.position().HasStudyFolders);
    EXPECT_EQ(form.behaviour.place.position().CurrentFolder.pathOrEmpty(),
              opened.disc.path({"Dicom", "Patient000"}));
    EXPECT_EQ(form.behaviour.place.position().PatientsFolder.pathOrEmpty(), opened.disc.path({"Dicom"}));
    EXPECT_EQ(form.File1.Path(), opened.series("Patient000", "Series1"));
    EXPECT_EQ(form.ezDicom.FileName(), "");
    EXPECT_EQ(form.dialogs.asked, QStringList());
}

TEST(OpenCommand, ShowsThePanelOfWhatTheFirstFileHolds) {
    // A slow disc (-1) makes no stills of a cine.
    for (const auto& [frames, stills] : {std::pair(0, true), {1, true}, {2, false}, {-1, false}}) {
        OpenedDisc opened({patientOf("S", {{frames}, {1, 1}})});
        EXPECT_EQ(opened.form.behaviour.place.position().StillsMode, stills) << frames;
        EXPECT_EQ(opened.form.Frame8.Visible(), stills) << frames;
        EXPECT_EQ(opened.form.Frame9.Visible(), !stills) << frames;
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

TEST(OpenCommand, EmptyFirstSeriesEndsItAndRestoresTheList) {
    OpenedDisc opened({patientOf("A", {{}, {3}})});
    EXPECT_EQ(opened.form.File1.Path(), "");
    EXPECT_EQ(opened.form.TreeView1.nodeCount(), 0);
    EXPECT_FALSE(opened.form.behaviour.place.position().PatientsFolder.isSet());
}

TEST(TreeClick, OpensACinePatientAtItsFirstRun) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    form.clickPatient(1);
    EXPECT_EQ(form.ezDicom.FileName(), opened.series("Patient001", "Series1") + QDir::separator() + "1.dcm");
    EXPECT_TRUE(form.Timer4.Enabled());
    EXPECT_EQ(form.behaviour.strip.ThumbFillCount(), 4);
    EXPECT_EQ(form.sb1.Max(), 8);
    EXPECT_EQ(form.sb1.Value(), 1);
    EXPECT_EQ(form.lblImg.Caption(), "Image : 1/7");
    EXPECT_EQ(form.stripNames(), QStringList({"1", "2", "3", "4", "5"}));
    EXPECT_EQ(form.Label5.Caption(), "Cine B");
    EXPECT_EQ(form.Label13.Caption(), "Cine B");
    EXPECT_EQ(form.Label6.Caption(), "Cine B Study1 Series1");
    EXPECT_EQ(form.Label15.Caption(), "Cine B Study1 Series1");
    EXPECT_FALSE(form.FraTree.Visible());
}

TEST(TreeClick, OpensAStillsPatientAtItsFirstSeries) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    form.clickPatient(0);
    ASSERT_TRUE(form.Timer4.Enabled());
    form.clickPatient(2);
    EXPECT_FALSE(form.Timer4.Enabled());
    EXPECT_TRUE(form.Frame8.Visible());
    EXPECT_FALSE(form.Frame9.Visible());
    EXPECT_EQ(form.ezDicom.FileName(), opened.series("Patient002", "Series1") + QDir::separator() + "1.dcm");
    EXPECT_EQ(form.sb1.Max(), 4);
    EXPECT_EQ(form.sb1.Value(), 4);
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/2");
    EXPECT_EQ(form.thumb[2]->Tag(), opened.series("Patient002", "Series3"));
    EXPECT_EQ(form.thumb[3]->FileName(), "");
}

TEST(TreeClick, PutsOfAnOpeningInOrder) {
    OpenedDisc opened({patientOf("A", {{2, 3}})});
    RecordingForm1& form = opened.form;
    form.journal.clear();
    form.clickPatient(0);
    const QStringList puts = form.putsWithoutFolders();
    // What was shown before is gone before the name comes.
    const qsizetype named = puts.indexOf("Label5.Caption=A"), probe = puts.indexOf("ezTest.FileName=1.dcm");
    EXPECT_LT(puts.indexOf("ezDicom.FileName="), named);
    EXPECT_EQ(puts.mid(named, 3),
              QStringList({"Label5.Caption=A", "Label13.Caption=A", "thumb(0).ThumbIndex=-1"}));
    EXPECT_EQ(
        puts.mid(probe, 15),
        QStringList({"ezTest.FileName=1.dcm", "Frame8.Visible=False", "Frame9.Visible=True", "sb1.Max=3",
                     "ezDicom.BestFit=True", "thumb(0).BackgroundFill=False", "thumb(0).BestFit=True",
                     "thumb(0).FileName=1.dcm", "thumb(0).BestFit=True", "thumb(1).BackgroundFill=False",
                     "thumb(1).BestFit=True", "thumb(1).FileName=2.dcm", "thumb(1).BestFit=True",
                     "sb1.Value=3", "thumb(0).BackgroundFill=False"}));
    EXPECT_EQ(puts.mid(puts.indexOf("ezDicom.FileName=1.dcm"), 3),
              QStringList({"ezDicom.FileName=1.dcm", "ezDicom.BestFit=True", "sb1.Value=1"}));
    EXPECT_EQ(
        puts.mid(puts.size() - 5),
        QStringList({"lblImg.Caption=Image : 1/2", "Timer4.Enabled=True", "Label6.Caption=A Study1 Series1",
                     "Label15.Caption=A Study1 Series1", "FraTree.Visible=False"}));
}

TEST(TreeClick, OtherNodesDoNothing) {
    OpenedDisc opened;
    opened.form.journal.clear();
    for (const int node : {2, 3, 4}) opened.form.clickNode(node);
    EXPECT_EQ(opened.form.journal.entries(), QStringList());
}

TEST(FolderCommand, CancelLeavesEverything) {
    OpenedDisc opened;
    opened.form.clickPatient(0);
    opened.form.journal.clear();
    opened.form.behaviour.opener.mnuOpen_Click();
    EXPECT_EQ(opened.form.journal.entries(), QStringList());
    EXPECT_TRUE(opened.form.behaviour.place.position().HasStudyFolders);
}

TEST(FolderCommand, CineFolderPlaysItsFirstFile) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    form.clickPatient(2);
    form.dialogs.folder = opened.series("Patient001", "Series1");
    form.behaviour.opener.mnuOpen_Click();
    EXPECT_EQ(form.ezDicom.FileName(), form.File1.fullPath(0));
    EXPECT_TRUE(form.Timer4.Enabled());
    EXPECT_TRUE(form.Frame9.Visible());
    EXPECT_EQ(form.Label5.Caption(), "Study Scroll Bar");
    EXPECT_EQ(form.Label6.Caption(), "Series Scroll Bar");
    EXPECT_FALSE(form.behaviour.place.position().HasStudyFolders);
    EXPECT_EQ(form.stripNames(), QStringList({"1", "2", "3", "4", "5"}));
    EXPECT_EQ(form.lblImg.Caption(), "Image : 1/7");
}

TEST(FolderCommand, StillsFolderShowsItsSeries) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    form.clickPatient(0);
    const QString study = opened.disc.path({"Dicom", "Patient002", "Study1"});
    DiscBuilder::write(study + "/0.dcm", "1");
    form.dialogs.folder = study;
    form.behaviour.opener.mnuOpen_Click();
    EXPECT_FALSE(form.Timer4.Enabled());
    EXPECT_EQ(form.sb1.Max(), 4);
    EXPECT_EQ(form.sb1.Value(), 1);
    EXPECT_EQ(form.ezDicom.FileName(), opened.series("Patient002", "Series1") + QDir::separator() + "1.dcm");
    EXPECT_EQ(form.thumb[2]->Tag(), opened.series("Patient002", "Series3"));
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/2");
}

TEST(FolderCommand, StillsFolderWithoutSeriesShowsItsOwnFirstFile) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    const QString folder = opened.series("Patient002", "Series3");
    QDir(folder).mkdir("empty");
    form.dialogs.folder = folder;
    form.behaviour.opener.mnuOpen_Click();
    EXPECT_EQ(form.File1.Path(), folder);
    EXPECT_EQ(form.ezDicom.FileName(), form.File1.fullPath(0));
    EXPECT_EQ(form.lblSeries.Caption(), "Image :1/3");
    EXPECT_EQ(form.sb1.Max(), 2);
}

TEST(FolderCommand, EmptyFolderRestoresTheListOnly) {
    OpenedDisc opened;
    RecordingForm1& form = opened.form;
    form.clickPatient(2);
    form.File1.putListIndex(1);
    const QString path = form.File1.Path(), shown = form.ezDicom.FileName();
    form.dialogs.folder = opened.disc.path();
    form.behaviour.opener.mnuOpen_Click();
    EXPECT_EQ(form.File1.Path(), path);
    EXPECT_EQ(form.File1.ListIndex(), 1);
    EXPECT_EQ(form.ezDicom.FileName(), shown);
    EXPECT_EQ(form.behaviour.place.position().CurrentFolder.pathOrEmpty(), opened.disc.path());
    EXPECT_FALSE(form.behaviour.place.position().HasStudyFolders);
    form.clickPatient(0);
    EXPECT_TRUE(form.behaviour.place.position().HasStudyFolders);
}

}  // namespace
}  // namespace cinedisc::test
