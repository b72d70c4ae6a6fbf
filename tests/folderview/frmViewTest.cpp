#include "app/Form1.h"
#include "folderview/frmView.h"
#include "panels/ScreenFit.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/WindowTest.h"
#include "tests/support/form/StandIns.h"
#include "viewerwindow/StripWheel.h"

#include <gmock/gmock.h>

namespace cinedisc::test {
namespace {

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
          {"", "objectName=frmView; Frame3.visible=true; Slider1.value=5; Timer4.active=false"},
          {"", "Frame4.visible=true; Frame5.visible=false; Frame6.visible=false; ListView1.visible=false"}});
    form.findChild<ScreenFit*>()->fitTo({1280, 900});
    form.resize(1280, 860);
    QCoreApplication::processEvents();
    for (const char* own :
         {"8 8 cmdOpen=Open Folder 4 cmdExport", "4 cmdPanning=Panning 8 |",
          "cmdOverlay=Overlay _ Command15=Exit 8\n8 _ thumb(0)", "/ 8 ezDicom+ 8 thumb(2)+ 4 sb1 8\n",
          "8 8 <Cine+ 17 <Frame Seek Bar _ lblFra>Frame 17 <Image+ 8\n4 8 cmdReverse=Reverse 4 cmdStop=Stop",
          "cmdStop=Stop 4 cmdPlay=Play 17 cmdPrev", "Option10=Reverse 8 Command3=Command3 17 Option4"})
        EXPECT_THAT(rowsOf(*form.centralWidget()), testing::HasSubstr(own));
    const QRect place = find("ezDicom").geometry();
    find("ezDicom").setFocus();
    walk({{"key F11", "fullScreen=true"}, {"key F11", "fullScreen=false; ezDicom.visible=true"}});
    EXPECT_TRUE(QTest::qWaitFor([&] { return find("ezDicom").geometry() == place; }));
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
}

TEST_F(frmViewTest, PlaysAndStepsThroughTheFolder) {
    open(folderOf(2));
    walk({{"click thumb(1)", "ezDicom.FileName=Series2/2.dcm; ThumbFillCount=4"}});
    EXPECT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 2; })) << "it plays by itself";
    walk({{"click cmdStop; click cmdNextImage", "ezDicom.FileName=Series2/3.dcm; lblImg.text=Image : 3/7"},
          {"sb1.value=7", "thumb(0).FileName=3.dcm; thumb(4).FileName=7.dcm"},
          {"Option11.checked=true; click thumb(4)", "ezDicom.FileName=Series2/7.dcm; ezDicom.CurrentFrame=9"},
          {"", "sb1.value=7; lblImg.text=Image : 7/7; Timer4.active=true"},
          {"Option4.checked=true; Option10.checked=true; click thumb(0)", "ezDicom.CurrentFrame=5"},
          {"Option9.checked=true; click thumb(0)", "ezDicom.FileName=Series2/1.dcm; ezDicom.CurrentFrame=1"},
          {"click cmdStop; sb1.maximum=2", ""}});
    // Nothing is trapped here, and no cine starts then.
    EXPECT_EQ(fatalErrorOf([&] { click("thumb(4)"); }), 380);
    walk({{"", "Timer4.active=false"}});
    open(folderOf(1));
    walk({{"", "ezDicom.FileName=Series2/5.dcm; thumb(1).FileName=2.dcm; thumb(4).FileName="}});
}

TEST_F(frmViewTest, TheWheelDrivesTheMainWindowsStripUntilTheWindowCloses) {
    Form1 mainWindow{disc.path()};
    StripWheel::setMainScrollBar(&mainWindow.sb1());
    open(folderOf(2));
    walk({{"roll sb1 -1200; roll thumb(3) -1", ""}});
    EXPECT_EQ(mainWindow.sb1().Value(), 3);
    walk({{"roll thumb(0) 120", "sb1.value=5"}});
    EXPECT_EQ(mainWindow.sb1().Value(), 2);
    EXPECT_TRUE(mainWindow.close());
    EXPECT_EQ(fatalErrorOf([&] { roll("sb1", -120); }), 91);
    EXPECT_TRUE(form.close());
    EXPECT_EQ(fatalErrorOf([&] { roll("sb1", -120); }), 0);
}

}  // namespace
}  // namespace cinedisc::test
