#include "app/Form1.h"
#include "folderview/frmView.h"
#include "folderview/frmViewCommandTable.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingControls.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"
#include "viewerwindow/ViewerCommands.h"

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
    /// One tick of the cine clock that does not depend on time.
    void tick() { form.behaviour().cine.Timer4_Timer(); }

    DiscBuilder disc{{patientOf("Somebody", {{3, 4}, {5, 4, 5, 6, 7, 8, 9}, {}})}, sampleFile};
    AnsweringDialogs dialogs;
    frmView form{&dialogs};
};

TEST_F(frmViewTest, StartsWithItsDefaults) {
    EXPECT_EQ(form.windowTitle(), "DICOM Viewer for Coronal Angiography");
    EXPECT_EQ(find<QSlider>("Slider1").value(), 5);
    EXPECT_EQ(clock().interval(), 50);
    EXPECT_FALSE(clock().isActive());
    for (const char* selected : {"Option4", "Option9", "Option3"})
        EXPECT_TRUE(find<QRadioButton>(selected).isChecked()) << selected;
    EXPECT_EQ(view("MouseMode"), 1);
    EXPECT_EQ(view("ThumbStyle"), 2);
    EXPECT_EQ(view("FileName"), "");
    EXPECT_EQ(file1("Pattern"), "*.dcm");
    EXPECT_TRUE(form.property("WheelPresent").toBool());
    EXPECT_EQ(form.property("ThumbFillCount"), 0);
    for (const char* hidden : {"Frame5", "Frame6", "ListView1"})
        EXPECT_FALSE(find(hidden).isVisible()) << hidden;
}

TEST_F(frmViewTest, ControlsStandInTheirFramesWithTheirCaptions) {
    struct Row {
        const char *frame, *name, *caption;
    };
    for (const Row& row : {Row{"Frame1", "cmdReverse", "Reverse"},
                           {"Frame1", "cmdPlay", "Play"},
                           {"Frame1", "cmdStop", "Stop"},
                           {"Frame1", "cmdPrev", ""},
                           {"Frame1", "cmdNext", ""},
                           {"Frame1", "cmdPrevImage", ""},
                           {"Frame1", "cmdNextImage", ""},
                           {"Frame1", "Option4", "Continuos"},
                           {"Frame1", "Option11", "Continuos"},
                           {"Frame2", "Option9", "Forward"},
                           {"Frame2", "Option10", "Reverse"},
                           {"Frame2", "Command3", "Command3"},
                           {"Frame3", "cmdOpen", ""},
                           {"Frame3", "cmdExport", "Export.."},
                           {"Frame3", "cmdOverlay", "Overlay"},
                           {"Frame3", "cmdWindow", ""},
                           {"Frame3", "cmdZoom", "Zoom"},
                           {"Frame3", "cmdHeader", "Header"},
                           {"Frame3", "cmdInvert", "Invert"},
                           {"Frame3", "cmdMagnify", ""},
                           {"Frame3", "cmdLabel", ""},
                           {"Frame3", "cmdSmooth", "Smooth"},
                           {"Frame3", "cmdPanning", ""},
                           {"Frame3", "Command15", "Exit"},
                           {"Frame5", "cmdFit(0)", "Best Fit"},
                           {"Frame5", "cmdFit(1)", "100%"},
                           {"Frame5", "cmdFit(2)", "50%"},
                           {"Frame5", "cmdFit(3)", "150%"},
                           {"Frame5", "cmdFit(4)", "200%"},
                           {"Frame6", "Option1", "None"},
                           {"Frame6", "Option2", "Black"},
                           {"Frame6", "Option3", "White"}}) {
        const auto* button = find(row.frame).findChild<QAbstractButton*>(row.name);
        ASSERT_NE(button, nullptr) << row.name;
        EXPECT_EQ(button->text(), row.caption) << row.name;
        EXPECT_FALSE(button->text().isEmpty() && button->icon().isNull()) << row.name;
    }
    for (const auto& [name, caption] :
         {std::pair{"lblImg", "Image"}, {"lblFra", "Frame"}, {"Label2", "Loop"}, {"Label3", "Continuous"}})
        EXPECT_EQ(text(name), caption);
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(find("Frame4").isAncestorOf(&find(QString("thumb(%1)").arg(i))));
}

TEST_F(frmViewTest, HasNothingOfTheCatalogueAndAHandlerForAllElse) {
    for (const char* absent : {"TreeView1", "FraTree", "ezTest", "Label1", "lblSeries", "mnuOpenCD",
                               "mnuAbout", "cmdPatBack", "cmNext", "cmdExit"})
        EXPECT_EQ(form.findChild<QObject*>(absent), nullptr) << absent;
    QSet<QString> handled;
    for (const auto& row : frmViewCommandTable()) handled << row.name;
    for (const auto& row : viewerCommands()) handled << row.name;
    QSet<QString> commands;
    for (const QAction* action : form.findChildren<QAction*>()) {
        if (action->objectName().startsWith("mnu") && !action->menu()) commands << action->objectName();
    }
    for (const QPushButton* button : form.findChildren<QPushButton*>()) commands << button->objectName();
    EXPECT_EQ(commands, handled);
    QSet<QString> seen;
    for (const QWidget* widget : form.findChildren<QWidget*>()) {
        const QString name = widget->objectName();
        if (name.isEmpty() || name.startsWith("qt_")) continue;
        EXPECT_FALSE(seen.contains(name)) << qPrintable(name);
        seen << name;
    }
}

TEST_F(frmViewTest, OpensAFolderOfTwoFilesWithoutLoadingTheMainView) {
    open(folderOf(1));
    EXPECT_EQ(dialogs.asked, QStringList{"Dicom"});
    EXPECT_EQ(previewFiles(), "1 2   ");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(preview(i, "ThumbStyle"), i < 2 ? 2 : 0) << i;
    EXPECT_EQ(sb1().maximum(), 3);
    EXPECT_EQ(sb1().value(), 3);
    EXPECT_EQ(form.property("ThumbFillCount"), 2);
    EXPECT_EQ(view("FileName"), "");
    EXPECT_EQ(view("BestFit"), true);
    EXPECT_FALSE(clock().isActive());
    EXPECT_EQ(text("lblImg"), "Image");
}

TEST_F(frmViewTest, AFolderThatIsNotOpenedChangesNothing) {
    open(folderOf(1));
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
    EXPECT_EQ(dialogs.asked.size(), 4);
}

TEST_F(frmViewTest, AWholeSession) {
    for (const char* idle : {"cmdPlay", "cmdReverse", "cmdNext", "cmdNextImage", "cmdExport", "thumb(0)"})
        click(idle);
    EXPECT_FALSE(clock().isActive());
    open(folderOf(2));
    EXPECT_EQ(previewFiles(), "1 2 3 4 5");
    EXPECT_EQ(sb1().value(), 5);
    EXPECT_EQ(form.property("ThumbFillCount"), 4);

    click("thumb(1)");
    EXPECT_EQ(shownFile(), "2.dcm");
    EXPECT_EQ(view("CurrentFrame"), 1);
    EXPECT_EQ(text("lblImg"), "Image : 2/7");
    EXPECT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 2; })) << "it plays by itself";
    click("cmdStop");
    EXPECT_FALSE(clock().isActive());
    find<QSlider>("Slider2").setValue(4);
    EXPECT_EQ(view("CurrentFrame"), 4);
    click("cmdNext");
    EXPECT_EQ(view("CurrentFrame"), 1);
    EXPECT_EQ(text("lblFra"), "Frame :1");
    click("cmdNextImage");
    EXPECT_EQ(shownFile(), "3.dcm");
    EXPECT_EQ(text("lblImg"), "Image : 3/7");

    sb1().setValue(7);
    EXPECT_EQ(previewFiles(), "3 4 5 6 7");
    sb1().setValue(5);
    EXPECT_EQ(previewFiles(), "3 4 5 6 7") << "kept";
    find<QRadioButton>("Option10").click();
    click("thumb(4)");
    EXPECT_EQ(view("CurrentFrame"), 9) << "a reverse run starts at its end";
    click("cmdStop");
    EXPECT_EQ(shownFile(), "7.dcm");
    find<QRadioButton>("Option9").click();
    find<QRadioButton>("Option11").click();
    for (int i = 0; i < 3 && shownFile() == "7.dcm"; ++i) tick();
    EXPECT_EQ(shownFile(), "1.dcm") << "on from the last file to the first";
    EXPECT_EQ(text("lblImg"), "Image : 1/7");

    find<QSlider>("Slider1").setValue(4);
    EXPECT_EQ(clock().interval(), 70);
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
        EXPECT_EXIT(end(), testing::ExitedWithCode(0), "^$") << exit;
    }
}

}  // namespace
}  // namespace cinedisc::test
