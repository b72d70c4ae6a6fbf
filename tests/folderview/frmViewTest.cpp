#include "app/Form1.h"
#include "folderview/frmView.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"
#include "tests/support/form/RecordingForm1.h"
#include "viewerwindow/StripWheel.h"

#include <QPushButton>

namespace cinedisc::test {
namespace {

/// The folder viewer's behaviour with every control a stand-in, on a folder of seven runs of three frames.
struct FolderBehaviourTest : testing::Test, RecordingWindow {
    FolderBehaviourTest() {
        connect(behaviour);
        dialogs.folder = disc.path({"Dicom", "Patient000", "Study1", "Series1"});
        behaviour.cmdOpen_Click();
    }
    DiscBuilder disc{{patientOf("A", {QList<int>(7, 3)})}};
    frmViewBehaviour behaviour{{controls, tools, exportFormat, *this, dialogs}};
};

TEST_F(FolderBehaviourTest, OpeningFitsEveryFilledPreviewAfterItsFileAndScrollingDoesNot) {
    QString first = "sb1.Max=8|ezDicom.BestFit=true|", last = "sb1.Value=5|";
    for (int i = 0; i < 5; ++i) {
        const QString preview = QString("thumb(%1).").arg(i);
        first.insert(first.indexOf("sb1"), preview + "ThumbIndex=-1|");
        first += QString("%1BackgroundFill=false|%1FileName=%2.dcm|%1BestFit=true|").arg(preview).arg(i + 1);
        last += QString("%1ThumbStyle=2|%1BestFit=true|").arg(preview);
    }
    EXPECT_EQ(puts().join('|') + '|', first + last);
    sb1.putValue(7);
    EXPECT_EQ(
        puts().mid(0, 4).join('|'),
        "sb1.Value=7|thumb(0).BackgroundFill=false|thumb(0).FileName=3.dcm|thumb(1).BackgroundFill=false");
}

TEST_F(FolderBehaviourTest, EitherOptionOpensAPreviewAtItsLastFrame) {
    for (const auto& [direction, endOfRun, frame] : {std::tuple{&Option9, &Option4, ""},
                                                     {&Option9, &Option11, "ezDicom.CurrentFrame=3|"},
                                                     {&Option10, &Option4, "ezDicom.CurrentFrame=3|"}}) {
        direction->putValue(true);
        endOfRun->putValue(true);
        sb1.putValue(1);
        puts();
        behaviour.thumb_Click(1);
        const QString all = puts().join('|');
        EXPECT_TRUE(all.startsWith(QString("ezDicom.FileName=2.dcm|%1sb1.Value=2|").arg(frame)));
        EXPECT_TRUE(all.endsWith("|lblImg.Caption=Image : 2/7|Timer4.Enabled=true"));
    }
    // Nothing is trapped here, and no cine starts then.
    Timer4.putEnabled(false);
    sb1.putMax(2);
    EXPECT_THROW(behaviour.thumb_Click(2), RunTimeError);
    EXPECT_FALSE(Timer4.Enabled());
    thumb[2]->putThumbIndex(-1);
    puts();
    behaviour.thumb_Click(2);
    EXPECT_EQ(puts(), QStringList()) << "an empty preview opens nothing";
}

/// The real window on folders of DICOM files; the outcomes of its dialogs are laid ready.
class frmViewTest : public WindowTest {
  protected:
    frmViewTest() { show(); }
    ~frmViewTest() override { StripWheel::setMainScrollBar(nullptr); }
    QWidget& window() override { return form; }

    QString folderOf(int series) const {
        return disc.path({"Dicom", "Patient000", "Study1", QString("Series%1").arg(series)});
    }
    void open(const QString& folder) {
        dialogs.folder = folder;
        click("cmdOpen");
    }
    DiscBuilder disc{{patientOf("Somebody", {{3, 4}, {5, 4, 5, 6, 7, 8, 9}, {}})}, sampleFile};
    PreparedDialogs dialogs;
    frmView form{&dialogs};
};

TEST_F(frmViewTest, StartsWithItsOwnDesignAndNothingOfTheCatalogue) {
    walk({{"", "windowTitle=DICOM Viewer for Coronal Angiography; WheelPresent=true; ezDicom.ThumbStyle=2"},
          {"", "Slider1.value=5; Timer4.active=false"},
          {"", "Frame5.visible=false; Frame6.visible=false; ListView1.visible=false"}});
    EXPECT_EQ(captionsIn<QAbstractButton>(form),
              "Command15=Exit|Command3=Command3|Option10=Reverse|Option11=Continuos|Option1=None|"
              "Option2=Black|Option3=White|Option4=Continuos|Option9=Forward|chkRecordedRate=Recorded|"
              "cmdExport=Export..|cmdFit(0)=Best Fit|cmdFit(1)=100%|cmdFit(2)=50%|cmdFit(3)=150%|"
              "cmdFit(4)=200%|cmdHeader=Header|cmdInvert=Invert|cmdLabel=|cmdMagnify=|cmdNext=|"
              "cmdNextImage=|cmdOpen=|cmdOverlay=Overlay|cmdPanning=|cmdPlay=Play|cmdPrev=|cmdPrevImage=|"
              "cmdReverse=Reverse|cmdSmooth=Smooth|cmdStop=Stop|cmdWindow=|cmdZoom=Zoom");
    EXPECT_EQ(captionsIn<QLabel>(form), "Label2=Loop|Label3=Continuous|lblFra=Frame|lblImg=Image|lblRate=");
    for (const auto* button : form.findChildren<QPushButton*>())
        EXPECT_FALSE(button->text().isEmpty() && button->icon().isNull()) << qPrintable(button->objectName());
    EXPECT_TRUE(find("Frame4").isAncestorOf(&find("thumb(4)")));
    for (const char* absent : {"TreeView1", "FraTree", "ezTest"})
        EXPECT_EQ(form.findChild<QObject*>(absent), nullptr) << absent;
    expectThatNoNameOccursTwice();
}

TEST_F(frmViewTest, OpensAFolderWithoutLoadingTheMainViewAndKeepsItWhenAnotherIsNotOpened) {
    for (const char* idle : {"cmdPlay", "cmdReverse", "cmdNext", "cmdNextImage", "cmdExport", "thumb(0)"})
        click(idle);
    open(folderOf(1));
    walk({{"", "thumb(0).FileName=1.dcm; thumb(1).FileName=2.dcm; thumb(2).FileName="},
          {"", "thumb(1).ThumbStyle=2; thumb(2).ThumbStyle=0; ThumbFillCount=2; lblImg.text=Image"},
          {"", "ezDicom.FileName=; ezDicom.BestFit=true; Timer4.active=false"},
          {"click thumb(1); click cmdStop; File1.ListIndex=1", ""}});
    for (const QString& folder : {QString(), folderOf(3), disc.path({"no such folder"})}) {
        dialogs.folder = folder;
        walk({{"choose mnuOpen", "File1.Path=/Series1; File1.ListIndex=1; lblImg.text=Image : 2/2"},
              {"", "ezDicom.FileName=Series1/2.dcm; thumb(1).FileName=2.dcm; sb1.value=2; sb1.maximum=3"}});
    }
    EXPECT_EQ(dialogs.asked.join(' '), "Dicom Dicom Dicom Dicom");
    expectEveryDisplayToolWorks();
    expectEscapeHidesThePopUps({"", "ezDicom", "thumb(0)", "sb1", "Slider1"});
}

TEST_F(frmViewTest, PlaysAndStepsThroughTheFolder) {
    open(folderOf(2));
    walk({{"click thumb(1)", "ezDicom.FileName=Series2/2.dcm; ThumbFillCount=4"}});
    EXPECT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 2; })) << "it plays by itself";
    walk({{"click cmdStop; Slider2.value=4", "ezDicom.CurrentFrame=4"},
          {"click cmdNextImage", "ezDicom.FileName=Series2/3.dcm; lblImg.text=Image : 3/7"},
          {"sb1.value=7", "thumb(0).FileName=3.dcm; thumb(4).FileName=7.dcm"},
          {"Option10.checked=true; click thumb(4)", "ezDicom.FileName=Series2/7.dcm"},
          {"click cmdStop; Option9.checked=true; Option11.checked=true; Slider2.value=9", ""}});
    form.behaviour().cine.Timer4_Timer();
    walk({{"", "ezDicom.FileName=Series2/1.dcm"}});  // on from the last file to the first
    open(folderOf(1));
    walk({{"", "ezDicom.FileName=Series2/1.dcm"}});  // not loaded yet
}

TEST_F(frmViewTest, TheWheelDrivesTheMainWindowsStripUntilTheWindowCloses) {
    StripWheel::setMainScrollBar(nullptr);
    EXPECT_EQ(fatalErrorOf([&] { roll("sb1", -120); }), 91);
    Form1 mainWindow{disc.path()};
    StripWheel::setMainScrollBar(&mainWindow.sb1());
    open(folderOf(2));
    walk({{"roll sb1 -1200; roll thumb(3) -1", ""}});
    EXPECT_EQ(mainWindow.sb1().Value(), 3);
    walk({{"roll thumb(0) 120", "sb1.value=5"}});
    EXPECT_EQ(mainWindow.sb1().Value(), 2);
    EXPECT_TRUE(form.close());
    roll("sb1", -120);
    EXPECT_EQ(mainWindow.sb1().Value(), 2);
}

TEST_F(frmViewTest, ExitEndsTheProgramAtOnce) {
    // Frames are decoded by threads.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const char* exit : {"Command15", "mnuExit"}) {
        const auto end = [&] { *exit == 'm' ? choose(exit) : click(exit); };
        EXPECT_EXIT(end(), testing::ExitedWithCode(0), "") << exit;
    }
}

}  // namespace
}  // namespace cinedisc::test
