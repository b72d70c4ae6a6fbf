#include "app/CommandTable.h"
#include "app/Form1.h"
#include "app/Main.h"
#include "control/frames/ImageLibrary.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QTimer>
#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// The real window on a disc of DICOM files.
class MainWindowTest : public WindowTest {
  protected:
    MainWindowTest() {
        ImageLibrary::shared().lookAhead(std::chrono::minutes(1));
        StripWheel::setMainScrollBar(&form.sb1());
        show();
    }

    QWidget& window() override { return form; }
    QString shownFile() { return view("FileName").toString().section(QDir::separator(), -3); }

    void openPatient(int patient) {
        click("Open");
        clickNode(patient);
    }
    /// One tick of the cine clock that does not depend on time.
    void tick() { form.behaviour().cine.Timer4_Timer(); }

    DiscBuilder disc{{patientOf("Cine <b>A</b> & Co", {{30, 4, 5, 6, 7, 8, 9}, {3, 3}}),
                      patientOf("Stills", {{1, 1, 1}, {1}})},
                     sampleFile};
    Form1 form{disc.path()};
};

TEST_F(MainWindowTest, StartsWithItsDefaults) {
    EXPECT_EQ(form.windowTitle(), "Cine Disc Viewer");
    EXPECT_EQ(find<QSlider>("Slider1").value(), 5);
    for (const char* selected : {"Option4", "Option9", "Option3"})
        EXPECT_TRUE(find<QRadioButton>(selected).isChecked()) << selected;
    EXPECT_EQ(view("MouseMode"), 1);
    EXPECT_EQ(view("BackgroundFill"), true);
    EXPECT_EQ(view("BackgroundColor"), 0);
    EXPECT_EQ(view("FileName"), "");
    EXPECT_TRUE(form.property("WheelPresent").toBool());
    EXPECT_EQ(form.property("CurrentFolder"), "");
    EXPECT_EQ(form.findChild<QObject*>("File1")->property("Pattern"), "*.dcm");
}

TEST_F(MainWindowTest, EveryCommandHasItsControlsAndAnUnknownOneIsAnErrorAtOnce) {
    QStringList handled, commands;
    const CommandFaces faces = form1Faces();
    for (const ButtonRow& button : faces.buttons) handled << button.name;
    for (const MenuRow& item : faces.items)
        if (item.kind == MenuKind::Command) handled << item.name;
    for (const QAction* action : form.findChildren<QAction*>())
        if (action->objectName().startsWith("mnu") && !action->menu()) commands << action->objectName();
    for (const QPushButton* button : form.findChildren<QPushButton*>()) commands << button->objectName();
    handled.sort();
    commands.sort();
    EXPECT_EQ(commands.join(' ').toStdString(), handled.join(' ').toStdString());
    EXPECT_THROW(CommandHandlers()("cmdNothing"), std::logic_error);
    EXPECT_THROW(ButtonTable(faces.buttons).make("cmdNothing", &form), std::logic_error);
}

TEST_F(MainWindowTest, OpensAPatientPlaysStepsAndShowsStills) {
    openPatient(0);
    EXPECT_EQ(shownFile(), "Study1/Series1/1.dcm");
    EXPECT_EQ(text("Label5"), "Cine <b>A</b> & Co");
    EXPECT_EQ(text("Label15"), "Cine <b>A</b> & Co Study1 Series1");
    EXPECT_EQ(text("lblImg"), "Image : 1/7");
    EXPECT_FALSE(find("FraTree").isVisible());
    EXPECT_EQ(form.property("CurrentFolder"), disc.path({"Dicom", "Patient000"}));
    EXPECT_EQ(form.property("PatientsFolder"), disc.path({"Dicom"}));
    EXPECT_EQ(form.property("ThumbFillCount"), 4);
    EXPECT_EQ(form.property("PatientCounter"), 2);
    EXPECT_FALSE(form.property("StillsMode").toBool());
    // The clock runs by itself, and each of its ticks moves picture, slider and label together.
    EXPECT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 3; }));
    EXPECT_EQ(find<QSlider>("Slider2").value(), view("CurrentFrame").toInt());
    EXPECT_EQ(text("lblFra"), QString("Frame :%1").arg(view("CurrentFrame").toInt()));
    click("cmdStop");
    EXPECT_FALSE(find<QTimer>("Timer4").isActive());
    find<QSlider>("Slider1").setValue(9);
    EXPECT_EQ(find<QTimer>("Timer4").interval(), 10);
    tick();
    find<QSlider>("Slider2").setValue(20);
    EXPECT_EQ(view("CurrentFrame"), 20);
    click("cmdNextImage");
    EXPECT_EQ(shownFile(), "Study1/Series1/2.dcm");
    click("thumb(4)");
    EXPECT_EQ(shownFile(), "Study1/Series1/5.dcm");
    EXPECT_TRUE(find<QTimer>("Timer4").isActive());
    click("cmNext");
    EXPECT_EQ(shownFile(), "Study1/Series2/1.dcm");
    click("cmdStudyNext");
    EXPECT_EQ(text("Label5"), "Stills");
    EXPECT_TRUE(find("Frame8").isVisible());
    click("cmdNextSeries");
    EXPECT_EQ(shownFile(), "Study1/Series1/2.dcm");
    EXPECT_EQ(text("lblSeries"), "Image :2/3");
    EXPECT_TRUE(form.property("StillsMode").toBool());
}

TEST_F(MainWindowTest, WheelMovesTheStripOneStepAnEvent) {
    openPatient(0);
    for (const auto& [on, delta, value] :
         {std::tuple{"sb1", -1200, 2}, {"thumb(2)", -1, 3}, {"sb1", 120, 2}, {"sb1", 0, 2}}) {
        click("cmdStop");
        roll(on, delta);
        EXPECT_EQ(find<QScrollBar>("sb1").value(), value);
    }
}

TEST_F(MainWindowTest, ToolsAndMenusWork) {
    openPatient(0);
    choose("mnuStop");
    EXPECT_FALSE(find<QTimer>("Timer4").isActive());
    expectEveryDisplayToolWorks();
    choose("mnuReverse");
    EXPECT_TRUE(find<QRadioButton>("Option10").isChecked());
    choose("mnuStop");
    const int frame = view("CurrentFrame").toInt();
    choose("mnuNextSlice");
    EXPECT_EQ(view("CurrentFrame").toInt(), frame == 30 ? 1 : frame + 1);
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(&form, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->image().size(), sampleSize);
}

TEST_F(MainWindowTest, PopUpsCloseAlsoWithTheChoiceInForceAndWithEscape) {
    click("cmdOverlay");
    find<QRadioButton>("Option3").click();
    EXPECT_FALSE(find("Frame6").isVisible());
    expectEscapeHidesThePopUps({"", "ezDicom", "sb1", "TreeView1", "Slider2", "cmdInvert"});
}

TEST_F(MainWindowTest, TheButtonOfTheMouseToolInForceIsMarked) {
    const auto marked = [&](const char* button) { return find(button).property("active").toBool(); };
    EXPECT_TRUE(marked("cmdWindow"));
    choose("mnuPanning");
    EXPECT_TRUE(marked("cmdPanning") && !marked("cmdWindow"));
    find<QRadioButton>("Option11").click();
    find<QRadioButton>("Option4").click();
    EXPECT_TRUE(marked("cmdWindow") && !marked("cmdPanning"));
}

TEST_F(MainWindowTest, PulledOutDiscKeepsTheWindowUsable) {
    openPatient(0);
    click("cmdStop");
    ASSERT_TRUE(QDir(disc.path()).removeRecursively());
    for (const char* button : {"cmNext", "cmdSeriesBack", "cmdStudyNext", "CmdStudyBack", "cmdNextImage",
                               "cmdPrevImage", "cmdNext", "cmdPrev", "thumb(1)"}) {
        click(button);
    }
    tick();
    EXPECT_TRUE(find("ezDicom").isVisible());
}

TEST_F(MainWindowTest, UntrappedErrorReachesTheFatalAction) {
    openPatient(0);
    click("cmdStop");
    DiscBuilder::write(disc.path({"CD.xml"}), "<cd><p><n>Somebody else</n></p></cd>");
    int number = 0;
    const auto before =
        EventGuard::replaceFatalAction([&](const RunTimeError& error) { number = error.number(); });
    find("FraTree").show();
    clickNode(0);
    EXPECT_EQ(number, 91);
}

TEST(MainProcedure, ShowsTheWindowAndForgetsItWhenClosed) {
    Main();
    ASSERT_NE(MainForm, nullptr);
    EXPECT_TRUE(MainForm->isVisible());
    MainForm->close();
    EXPECT_EQ(MainForm, nullptr);
}

}  // namespace
}  // namespace cinedisc::test
