#include "app/CommandTable.h"
#include "app/Form1.h"
#include "app/Main.h"
#include "control/CornerText.h"
#include "control/ezDICOMX.h"
#include "control/frames/ImageLibrary.h"
#include "panels/ScreenFit.h"
#include "panels/Theme.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"
#include "tests/support/form/CommandNames.h"
#include "viewerwindow/StripWheel.h"

#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSet>
#include <QSlider>
#include <QSplitter>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <map>

namespace cinedisc::test {
namespace {

/// The real window on a disc of DICOM files.
class Form1Test : public WindowTest {
  protected:
    static void SetUpTestSuite() { applyTheme(*qApp); }
    Form1Test() {
        ImageLibrary::shared().lookAhead(std::chrono::minutes(1));
        StripWheel::setMainScrollBar(&form.sb1());
        show();
    }

    QWidget& window() override { return form; }
    QString shownFile() { return QDir::fromNativeSeparators(view("FileName").toString()).section('/', -3); }
    /// Where a widget is, in the window.
    QRect placeOf(const QString& name) {
        const QWidget& widget = find(name);
        return {widget.mapTo(&window(), QPoint()), widget.size()};
    }
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

TEST_F(Form1Test, StartsAsDesigned) {
    EXPECT_EQ(form.windowTitle(), "Cine Disc Viewer");
    EXPECT_EQ(captionsIn<QAbstractButton>(form),
              "CmdStudyBack=|Command2=|Command3=Command3|Open=|Option10=Reverse|Option11=Continuos|"
              "Option1=None|Option2=Black|Option3=White|Option4=Continuos|Option9=Forward|chkRecordedRate="
              "Recorded|cmNext=|"
              "cmdExit=Exit|cmdExport=Export..|cmdFit(0)=Best Fit|cmdFit(1)=100%|cmdFit(2)=50%|"
              "cmdFit(3)=150%|cmdFit(4)=200%|cmdHeader=Header|cmdInvert=Invert|cmdLabel=|cmdMagnify=|"
              "cmdNext=|cmdNextImage=|cmdNextSeries=|cmdOverlay=Overlay|cmdPanning=Panning|cmdPatBack=|"
              "cmdPlay=|cmdPrev=|cmdPrevImage=|cmdPreviousSeries=|cmdReverse=|cmdSerBack=|cmdSerNext=|"
              "cmdSeriesBack=|cmdSmooth=Smooth|cmdStop=Stop|cmdStudyNext=|cmdWindow=|cmdZoom=Zoom");
    EXPECT_EQ(captionsIn<QLabel>(form),
              "Label13=Study Scroll Bar|Label15=Series Scroll Bar|Label1=|Label2=Loop|Label3=Continuous|"
              "Label5=Study Scroll Bar|Label6=Series Scroll Bar|Label8=Frame Scroll Bar|"
              "Label9=Image Scroll Bar|lblFra=Frame|lblImg=Image|lblRate=|lblRemark=|lblSeries=");
    EXPECT_EQ(property("FraTree", "title"), "Patient List..");
    for (const auto* button : form.findChildren<QAbstractButton*>()) {
        if (!button->text().isEmpty() || button->objectName().startsWith("qt_")) continue;
        EXPECT_FALSE(button->icon().isNull()) << qPrintable(button->objectName());
        EXPECT_FALSE(button->toolTip().isEmpty()) << qPrintable(button->objectName());
    }
    QStringList toolTips;
    for (const char* name : {"cmdPatBack", "Command2", "CmdStudyBack", "cmdStudyNext", "cmdSerBack",
                             "cmdSerNext", "cmdSeriesBack", "cmNext", "cmdPreviousSeries", "cmdNextSeries",
                             "Option1", "Option2", "Option3", "Option9", "Option10", "Slider1"})
        toolTips << find(name).toolTip();
    EXPECT_EQ(toolTips.join('|'),
              "Previous Patient|Next Patient|Previous Patient|Next Patient|"
              "Previous Series|Next Series|Previous Series|Next Series|"
              "Previous Frame|Next Frame||||||Speed Bar");
    expectThatNoNameOccursTwice();
    expectTheButtonsAndMenuItems(commandNames(form1Faces()));
    EXPECT_THROW(CommandHandlers()("cmdNothing"), std::logic_error);
    EXPECT_THROW(ButtonTable(form1Faces().buttons).make("cmdNothing", &form), std::logic_error);

    for (const auto& [name, minimum, maximum, value] :
         {std::tuple{"Slider1", 0, 10, 5}, {"Slider2", 1, 10, 1}, {"sb1", 1, 32767, 1}}) {
        const auto& slider = find<QAbstractSlider>(name);
        EXPECT_EQ((QList{slider.minimum(), slider.maximum(), slider.value()}),
                  (QList{minimum, maximum, value}));
    }
    for (const char* timer : {"Timer1", "Timer4"}) {
        EXPECT_EQ(property(timer, "interval"), 50);
        EXPECT_EQ(property(timer, "active"), false);
    }
    for (const auto& [panel, hidden] : {std::pair{"FraTree", false},
                                        {"Frame9", false},
                                        {"Frame8", true},
                                        {"Frame5", true},
                                        {"Frame6", true},
                                        {"ezTest", true}})
        EXPECT_EQ(find(panel).isHidden(), hidden) << panel;
    for (const char* useless : {"cmdPlay", "cmdNext", "cmdExport", "cmNext"})
        EXPECT_FALSE(find(useless).isEnabled()) << "before a disc is open";
    for (const char* selected : {"Option4", "Option9", "Option3"})
        EXPECT_TRUE(find<QRadioButton>(selected).isChecked()) << selected;
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(find<ezDICOMX>(QString("thumb(%1)").arg(i)).role(), ViewRole::Preview);
    EXPECT_EQ(find<ezDICOMX>("ezTest").role(), ViewRole::Probe);
    EXPECT_EQ(view("MouseMode"), 1);
    EXPECT_EQ(view("BackgroundFill"), true);
    EXPECT_EQ(view("BackgroundColor"), 0);
    EXPECT_EQ(view("FileName"), "");
    EXPECT_TRUE(form.property("WheelPresent").toBool());
    EXPECT_EQ(form.property("CurrentFolder"), "");
    EXPECT_EQ(property("File1", "Pattern"), "*.dcm");
}

/// The menus as "name=caption shortcut", what they hold in braces.
QString outline(const QList<QAction*>& actions) {
    QStringList items;
    for (const QAction* action : actions) {
        items << action->objectName() + "=" + action->text() + action->shortcut().toString();
        if (action->menu()) items.last() += "{" + outline(action->menu()->actions()) + "}";
    }
    return items.join("|");
}

TEST_F(Form1Test, TheTreeOfMenusIsTheDesigned) {
    EXPECT_EQ(outline(form.menuBar()->actions()),
              "mnuFile=&File{mnuOpen=&Open|mnuOpenCD=OpenCD|mnuExport=Export|mnuExit=E&xit}|"
              "mnuEdit=&Edit{mnuCopy=&Copy ImageCtrl+C|mnuCopyHeader=Copy Header}|"
              "mnuTools=&Tools{mnuWindow=&Window|mnuPanning=&Panning|mnuSmooth=&Smooth|mnuMagnify=&Magnify|"
              "mnuInvert=&Invert|mnuLabel=&Label|mnuHeader=&Header|"
              "mnuZoom=&Zoom{mnuBestFit=&Bestfit|mnu50=50%|mnu100=100%|mnu150=150%|mnu200=200%}|"
              "mnuOverLay=&Overlay{mnuNone=None|mnuBlack=&Black |mnuWhite=&White}|"
              "mnuCine=&Cine{mnuReverse=&Reverse|mnuStop=&Stop|mnuPlay=&Play|mnuNextSlice=Next Slice|"
              "mnuPreviousSlice=Previous Slice |mnuNext=Next Image|mnuPrevious=Previous Image}}|"
              "mnuHelp=&Help{mnuAbout=&About}");
}

TEST_F(Form1Test, NothingIsCutOnAnyScreen) {
    const QFont usual = QApplication::font();
    for (const double letters : {1.0, 4 / 3.0}) {
        QFont font = usual;
        font.setPointSizeF(usual.pointSizeF() * letters);
        QApplication::setFont(font);
        for (const QSize screen :
             {QSize(400, 300), QSize(640, 400), QSize(800, 600), QSize(960, 540), QSize(1092, 614),
              QSize(1280, 800), QSize(1280, 1024), QSize(3840, 2160), QSize(1080, 1920), QSize(540, 960)}) {
            Form1 shown(disc.path());
            shown.show();
            EXPECT_TRUE(shown.screen()->availableGeometry().contains(shown.geometry()));
            auto& fit = *shown.findChild<ScreenFit*>();
            const QSize scaled = screen / ScreenFit::scaleFor(screen);
            fit.fitTo(scaled);
            shown.resize(shown.minimumSize());
            const auto told = [&](const QString& name) {
                return QString("%1 on %2 x %3")
                    .arg(name)
                    .arg(screen.width())
                    .arg(screen.height())
                    .toStdString();
            };
            EXPECT_EQ(scaled.boundedTo(shown.size()), shown.size()) << told("window");
            for (const bool stills : {true, false}) {
                shown.findChild<QWidget*>("Frame8")->setVisible(stills);
                shown.findChild<QWidget*>("Frame9")->setVisible(!stills);
                QCoreApplication::processEvents();
                for (const QWidget* widget : shown.findChildren<QWidget*>()) {
                    const QString name = widget->objectName();
                    if (!widget->isVisible() || name.isEmpty() || name.startsWith("qt_")) continue;
                    const QRect place(widget->mapTo(&shown, QPoint()), widget->size());
                    EXPECT_TRUE(shown.rect().contains(place)) << told(name);
                    EXPECT_FALSE(place.isEmpty()) << told(name);
                    const bool holdsText = qobject_cast<const QAbstractButton*>(widget);
                    const QSize needed = holdsText ? widget->sizeHint() : widget->minimumSizeHint();
                    EXPECT_EQ(place.size().expandedTo(needed), place.size()) << told(name);
                }
            }
        }
    }
    QApplication::setFont(usual);
}

TEST_F(Form1Test, PartsKeepTheirPlaces) {
    const auto settle = [this](QSize size) {
        form.resize(size);
        QCoreApplication::processEvents();
    };
    form.findChild<ScreenFit*>()->fitTo({1920, 1920});
    for (const auto& [button, popUp] : {std::pair{"cmdZoom", "Frame5"}, {"cmdOverlay", "Frame6"}}) {
        click(button);
        EXPECT_EQ(placeOf(popUp).left(), placeOf(button).left());
        EXPECT_GT(placeOf(popUp).top(), placeOf(button).bottom());
        QWidget* const onTop = form.childAt(placeOf(popUp).center());
        EXPECT_TRUE(onTop == &find(popUp) || find(popUp).isAncestorOf(onTop));
        find(popUp).hide();
    }
    settle(QSize(1280, 900));
    const QRect besideTree = placeOf("ezDicom"), tree = placeOf("FraTree");
    find("FraTree").hide();
    QCoreApplication::processEvents();
    const QRect alone = placeOf("ezDicom");
    EXPECT_EQ(alone.left(), tree.left());
    EXPECT_EQ(alone.right(), besideTree.right());
    EXPECT_GT(alone.height(), 2 * form.height() / 3);
    find("Frame9").hide();
    find("Frame8").show();
    for (const char* label : {"Label5", "Label1"}) find<QLabel>(label).setText(QString(500, 'W'));
    QCoreApplication::processEvents();
    EXPECT_EQ(placeOf("ezDicom"), alone) << "neither the mode nor long texts move it";
    const auto expectSquarePreviews = [this] {
        for (int i = 0; i < 5; ++i) {
            const QSize preview = find(QString("thumb(%1)").arg(i)).size();
            EXPECT_NEAR(preview.width(), preview.height(), 2);
        }
    };
    expectSquarePreviews();
    settle(QSize(950, 1500));
    expectSquarePreviews();
    EXPECT_GT(placeOf("thumb(0)").top(), placeOf("ezDicom").bottom());
    EXPECT_GT(placeOf("ezDicom").width(), 900) << "an upright window has the previews below";
    // However the two share the room, the corner words have theirs.
    find("FraTree").show();
    form.findChild<QSplitter*>()->setSizes({100000, 0});
    QCoreApplication::processEvents();
    EXPECT_GE(find("ezDicom").width(), CornerText::leastWidth());
}

TEST_F(Form1Test, OpensAPatientPlaysStepsAndShowsStills) {
    openPatient(0);
    EXPECT_TRUE(find("cmdPlay").isEnabled() && find("cmNext").isEnabled());
    EXPECT_EQ(shownFile(), "Study1/Series1/1.dcm");
    EXPECT_EQ(text("Label5"), "Cine <b>A</b> & Co");
    EXPECT_EQ(text("Label15"), "Cine <b>A</b> & Co Study1 Series1");
    EXPECT_EQ(text("lblImg"), "Image : 1/7");
    EXPECT_FALSE(find("FraTree").isVisible());
    EXPECT_EQ(form.property("CurrentFolder"), disc.path({"Dicom", "Patient000"}));
    EXPECT_EQ(form.property("PatientsFolder"), disc.path({"Dicom"}));
    EXPECT_EQ(form.property("ThumbFillCount"), 4);
    EXPECT_EQ(form.property("PatientCounter"), 2);
    EXPECT_EQ(form.property("HasStudyFolders"), true);
    EXPECT_EQ(form.property("StillsMode"), false);
    // The clock runs by itself, and each of its ticks moves picture, slider and label together.
    EXPECT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 3; }));
    EXPECT_EQ(property("Slider2", "value"), view("CurrentFrame"));
    EXPECT_EQ(text("lblFra"), "Frame :" + view("CurrentFrame").toString());
    click("cmdStop");
    EXPECT_EQ(property("Timer4", "active"), false);
    find<QSlider>("Slider1").setValue(9);
    EXPECT_EQ(property("Timer4", "interval"), 10);
    tick();
    find<QSlider>("Slider2").setValue(20);
    EXPECT_EQ(view("CurrentFrame"), 20);
    click("cmdNextImage");
    EXPECT_EQ(shownFile(), "Study1/Series1/2.dcm");
    click("thumb(4)");
    EXPECT_EQ(shownFile(), "Study1/Series1/5.dcm");
    EXPECT_EQ(property("Timer4", "active"), true);
    for (const auto& [on, delta, value] :
         {std::tuple{"sb1", -1200, 6}, {"thumb(2)", -1, 7}, {"sb1", 120, 6}, {"sb1", 0, 6}}) {
        click("cmdStop");
        roll(on, delta);
        EXPECT_EQ(property("sb1", "value"), value) << "one step a roll";
    }
    click("cmNext");
    EXPECT_EQ(shownFile(), "Study1/Series2/1.dcm");
    click("cmdStudyNext");
    EXPECT_EQ(text("Label5"), "Stills");
    EXPECT_TRUE(find("Frame8").isVisible());
    click("cmdNextSeries");
    EXPECT_EQ(shownFile(), "Study1/Series1/2.dcm");
    EXPECT_EQ(text("lblSeries"), "Image :2/3");
    EXPECT_EQ(form.property("StillsMode"), true);
}

TEST_F(Form1Test, ToolsAndMenusWork) {
    openPatient(0);
    choose("mnuStop");
    EXPECT_EQ(property("Timer4", "active"), false);
    expectEveryDisplayToolWorks();
    find("FraTree").show();
    expectEscapeHidesThePopUps({"", "ezDicom", "sb1", "TreeView1", "Slider2", "cmdInvert"});
    choose("mnuReverse");
    EXPECT_TRUE(find<QRadioButton>("Option10").isChecked() && !find<QRadioButton>("Option9").isChecked());
    choose("mnuStop");
    const int frame = view("CurrentFrame").toInt();
    choose("mnuNextSlice");
    EXPECT_EQ(view("CurrentFrame").toInt(), frame % 30 + 1);
}

/// The luminances of two colours as sight compares them (WCAG 2.1).
double contrast(const QColor& one, const QColor& other) {
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double c) {
            return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    };
    const auto [less, more] = std::minmax({luminance(one), luminance(other)});
    return (more + 0.05) / (less + 0.05);
}

TEST_F(Form1Test, WhatIsInForceIsMarkedWhoeverPutIt) {
    openPatient(0);
    click("cmdStop");
    find("ezDicom").setProperty("BestFit", false);
    const auto inForce = [this] {
        QSet<QString> names;
        for (const auto* button : form.findChildren<QPushButton*>())
            if (button->property("active").toBool()) names << button->objectName();
        for (const auto* item : form.findChildren<QAction*>())
            if (item->isChecked()) names << item->objectName();
        return names;
    };
    const auto colour = [this](const QString& name) {
        return find(name).grab().toImage().pixelColor(name.startsWith("thumb") ? 0 : 3, 15);
    };
    const auto before = inForce();
    for (const auto& [member, value, changes] :
         {std::tuple{"MouseMode", QVariant(4), "cmdPanning cmdWindow mnuPanning mnuWindow"},
          {"MouseMode", 2, "cmdWindow mnuWindow"},
          {"MouseMode", 3, "cmdMagnify cmdWindow mnuMagnify mnuWindow"},
          {"MouseMode", 5, "cmdLabel cmdWindow mnuLabel mnuWindow"},
          {"Polarity", -1, "cmdInvert mnuInvert"},
          {"Smooth", false, "cmdSmooth mnuSmooth"},
          {"ShowHeader", true, "cmdHeader mnuHeader"},
          {"BestFit", true, "cmdFit(0) cmdFit(1) mnu100 mnuBestFit"},
          {"ZoomPercent", 50, "cmdFit(1) cmdFit(2) mnu100 mnu50"},
          {"ZoomPercent", 120, "cmdFit(1) mnu100"},
          {"BackgroundColor", 1, "mnuBlack mnuWhite"},
          {"BackgroundFill", false, "mnuNone mnuWhite"},
          {"FileName", "", "cmdStop mnuStop"}}) {
        const QVariant was = view(member);
        find("ezDicom").setProperty(member, value);
        const auto now = inForce();
        QStringList changed((now - before + (before - now)).values());
        changed.sort();
        EXPECT_EQ(changed.join(' '), changes);
        std::map<QString, QColor> colours;
        for (const QString& name : changed)
            if (name.startsWith("cmd") && find(name).isVisible()) colours[name] = colour(name);
        find("ezDicom").setProperty(member, was);
        EXPECT_EQ(inForce(), before) << member;
        for (const auto& [name, then] : colours)
            EXPECT_GE(contrast(then, colour(name)), 3) << qPrintable(name);
    }
    for (const char* again : {"mnuWindow", "mnuStop", "mnuWhite"}) choose(again);
    EXPECT_EQ(inForce(), before) << "chosen once more";
    find<QTimer>("Timer4").start();
    EXPECT_TRUE(inForce().contains("cmdPlay") && !inForce().contains("cmdStop"));
    find<QRadioButton>("Option10").setChecked(true);
    EXPECT_TRUE(inForce().contains("mnuReverse") && !inForce().contains("cmdPlay"));
    EXPECT_GE(contrast(colour("thumb(0)"), colour("thumb(1)")), 3);
    click("cmdStudyNext");
    click("cmdNextSeries");
    EXPECT_TRUE(find<ezDICOMX>("thumb(0)").isMarked()) << "it stands for the series";
}

TEST_F(Form1Test, PulledOutDiscKeepsTheWindowUsableAndAnUntrappedErrorIsTold) {
    openPatient(0);
    click("cmdStop");
    DiscBuilder::write(disc.path({"CD.xml"}), "<cd><p><n>Somebody else</n></p></cd>");
    find("FraTree").show();
    EXPECT_EQ(fatalErrorOf([&] { clickNode(0); }), 91);
    click("cmdStop");
    ASSERT_TRUE(QDir(disc.path()).removeRecursively());
    for (const char* button : {"cmNext", "cmdSeriesBack", "cmdStudyNext", "CmdStudyBack", "cmdNextImage",
                               "cmdPrevImage", "cmdNext", "cmdPrev", "thumb(1)"})
        click(button);
    tick();
    EXPECT_TRUE(find("ezDicom").isVisible());
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
