#include "app/Form1.h"
#include "folderview/frmView.h"
#include "folderview/frmViewCommandTable.h"
#include "tests/support/Captions.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingControls.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSet>
#include <QSlider>
#include <QTimer>

namespace cinedisc::test {
namespace {

/// The real window on folders of DICOM files; what is answered to its dialogs is laid ready.
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
    QVariant file1(const char* member) { return form.findChild<QObject*>("File1")->property(member); }
    QScrollBar& sb1() { return find<QScrollBar>("sb1"); }
    QTimer& clock() { return find<QTimer>("Timer4"); }
    static QString nameOf(const QVariant& path) { return QFileInfo(path.toString()).fileName(); }
    QString shownFile() { return nameOf(view("FileName")); }
    QString previewFiles() {
        QStringList names;
        for (int i = 0; i < 5; ++i) names << nameOf(preview(i, "FileName")).remove(".dcm");
        return names.join(" ");
    }
    DiscBuilder disc{{patientOf("Somebody", {{3, 4}, {5, 4, 5, 6, 7, 8, 9}, {}})}, sampleFile};
    AnsweringDialogs dialogs;
    frmView form{&dialogs};
};

TEST_F(frmViewTest, StartsWithItsOwnDesignAndNothingOfTheCatalogue) {
    EXPECT_EQ(form.windowTitle(), "DICOM Viewer for Coronal Angiography");
    EXPECT_EQ(find<QSlider>("Slider1").value(), 5);
    EXPECT_EQ(clock().interval(), 50);
    EXPECT_FALSE(clock().isActive());
    for (const char* selected : {"Option4", "Option9", "Option3"})
        EXPECT_TRUE(find<QRadioButton>(selected).isChecked()) << selected;
    EXPECT_EQ(view("ThumbStyle"), 2);
    EXPECT_EQ(file1("Pattern"), "*.dcm");
    EXPECT_TRUE(form.property("WheelPresent").toBool());
    for (const char* hidden : {"Frame5", "Frame6", "ListView1"})
        EXPECT_FALSE(find(hidden).isVisible()) << hidden;
    for (const auto& [frame, captions] :
         {std::pair{"Frame1",
                    "Command3=Command3|Option10=Reverse|Option11=Continuos|Option4=Continuos|"
                    "Option9=Forward|cmdNext=|cmdNextImage=|cmdPlay=Play|cmdPrev=|"
                    "cmdPrevImage=|cmdReverse=Reverse|cmdStop=Stop"},
          {"Frame2", "Command3=Command3|Option10=Reverse|Option9=Forward"},
          {"Frame3",
           "Command15=Exit|cmdExport=Export..|cmdHeader=Header|cmdInvert=Invert|cmdLabel=|"
           "cmdMagnify=|cmdOpen=|cmdOverlay=Overlay|cmdPanning=|cmdSmooth=Smooth|cmdWindow=|"
           "cmdZoom=Zoom"},
          {"Frame5", "cmdFit(0)=Best Fit|cmdFit(1)=100%|cmdFit(2)=50%|cmdFit(3)=150%|cmdFit(4)=200%"},
          {"Frame6", "Option1=None|Option2=Black|Option3=White"}})
        EXPECT_EQ(captionsOf<QAbstractButton>(find(frame)), captions);
    EXPECT_EQ(captionsOf<QLabel>(form), "Label2=Loop|Label3=Continuous|lblFra=Frame|lblImg=Image");
    for (const auto* button : form.findChildren<QPushButton*>())
        EXPECT_FALSE(button->text().isEmpty() && button->icon().isNull()) << qPrintable(button->objectName());
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(find("Frame4").isAncestorOf(&find(QString("thumb(%1)").arg(i))));
    for (const char* absent : {"TreeView1", "FraTree", "ezTest"})
        EXPECT_EQ(form.findChild<QObject*>(absent), nullptr) << absent;
    expectUniqueNames(form);
    QSet<QString> handled, commands;
    const CommandFaces faces = frmViewFaces();
    for (const ButtonRow& button : faces.buttons) handled << button.name;
    for (const MenuRow& item : faces.items)
        if (item.kind == MenuKind::Command) handled << item.name;
    for (const QAction* action : form.findChildren<QAction*>())
        if (action->objectName().startsWith("mnu") && !action->menu()) commands << action->objectName();
    for (const QPushButton* button : form.findChildren<QPushButton*>()) commands << button->objectName();
    EXPECT_EQ(commands, handled);
}

TEST_F(frmViewTest, OpensAFolderWithoutLoadingTheMainViewAndKeepsItWhenAnotherIsNotOpened) {
    open(folderOf(1));
    EXPECT_EQ(previewFiles(), "1 2   ");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(preview(i, "ThumbStyle"), i < 2 ? 2 : 0) << i;
    EXPECT_EQ(form.property("ThumbFillCount"), 2);
    EXPECT_EQ(view("FileName"), "");
    EXPECT_EQ(view("BestFit"), true);
    EXPECT_FALSE(clock().isActive());
    EXPECT_EQ(text("lblImg"), "Image");
    click("thumb(1)");
    click("cmdStop");
    form.findChild<QObject*>("File1")->setProperty("ListIndex", 1);
    const auto state = [&] {
        return QVariantList{file1("Path"),    file1("ListIndex"), previewFiles(),  sb1().value(),
                            view("FileName"), text("lblImg"),     sb1().maximum(), clock().isActive()};
    };
    const QVariantList before = state();
    for (const QString& folder : {QString(), folderOf(3), disc.path({"no such folder"})}) {
        dialogs.folder = folder;
        choose("mnuOpen");
        EXPECT_EQ(state(), before) << qPrintable(folder);
    }
    EXPECT_EQ(dialogs.asked.join(' '), "Dicom Dicom Dicom Dicom");
}

TEST_F(frmViewTest, AWholeSession) {
    for (const char* idle : {"cmdPlay", "cmdReverse", "cmdNext", "cmdNextImage", "cmdExport", "thumb(0)"})
        click(idle);
    EXPECT_FALSE(clock().isActive());
    open(folderOf(2));
    EXPECT_EQ(form.property("ThumbFillCount"), 4);
    click("thumb(1)");
    EXPECT_EQ(shownFile(), "2.dcm");
    EXPECT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 2; })) << "it plays by itself";
    click("cmdStop");
    find<QSlider>("Slider2").setValue(4);
    EXPECT_EQ(view("CurrentFrame"), 4);
    click("cmdNextImage");
    EXPECT_EQ(shownFile(), "3.dcm");
    EXPECT_EQ(text("lblImg"), "Image : 3/7");
    sb1().setValue(7);
    EXPECT_EQ(previewFiles(), "3 4 5 6 7");
    find<QRadioButton>("Option10").click();
    click("thumb(4)");
    click("cmdStop");
    EXPECT_EQ(shownFile(), "7.dcm");
    find<QRadioButton>("Option9").click();
    find<QRadioButton>("Option11").click();
    find<QSlider>("Slider2").setValue(9);
    form.behaviour().cine.Timer4_Timer();
    EXPECT_EQ(shownFile(), "1.dcm") << "on from the last file to the first";
    open(folderOf(1));
    EXPECT_EQ(previewFiles(), "1 2   ");
    EXPECT_EQ(view("FileName").toString(), folderOf(2) + QDir::separator() + "1.dcm") << "not loaded yet";
    EXPECT_TRUE(form.close());
}

TEST_F(frmViewTest, DisplayToolsWork) {
    open(folderOf(1));
    click("thumb(0)");
    click("cmdStop");
    expectEveryDisplayToolWorks();
    expectEscapeHidesThePopUps({"", "ezDicom", "thumb(0)", "sb1", "Slider1"});
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(&form, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->image().size(), sampleSize);
}

TEST_F(frmViewTest, TheWheelDrivesTheMainWindowsStripUntilTheWindowCloses) {
    Form1 mainWindow{disc.path()};
    StripWheel::setMainScrollBar(&mainWindow.sb1());
    const auto& mainStrip = *mainWindow.findChild<QScrollBar*>("sb1");
    open(folderOf(2));
    roll("sb1", -1200);
    roll("thumb(3)", -1);
    EXPECT_EQ(mainStrip.value(), 3);
    roll("thumb(0)", 120);
    EXPECT_EQ(mainStrip.value(), 2);
    EXPECT_EQ(sb1().value(), 5);
    form.close();
    roll("sb1", -120);
    EXPECT_EQ(mainStrip.value(), 2);
}

TEST_F(frmViewTest, AWheelRollWithoutAMainWindowIsAnUntrappedError) {
    int number = 0;
    const auto before =
        EventGuard::replaceFatalAction([&](const RunTimeError& error) { number = error.number(); });
    StripWheel::setMainScrollBar(nullptr);
    roll("sb1", -120);
    EXPECT_EQ(number, 91);
    EventGuard::replaceFatalAction(before);
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
