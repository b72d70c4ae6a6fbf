#include "app/CommandTable.h"
#include "app/Main.h"
#include "control/CornerText.h"
#include "control/ezDICOMX.h"
#include "panels/ScreenFit.h"
#include "tests/app/Form1Fixture.h"

#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QSplitter>
#include <QTimer>

#include <map>

namespace cinedisc::test {
namespace {

TEST_F(Form1Test, StartsAsDesigned) {
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
    for (const auto* button : form.findChildren<QAbstractButton*>()) {
        if (!button->text().isEmpty() || button->objectName().startsWith("qt_")) continue;
        EXPECT_FALSE(button->icon().isNull()) << qPrintable(button->objectName());
        EXPECT_FALSE(button->toolTip().isEmpty()) << qPrintable(button->objectName());
    }
    expectThatNoNameOccursTwice();
    EXPECT_THROW(CommandHandlers()("cmdNothing"), std::logic_error);
    EXPECT_THROW(ButtonTable(form1Faces().buttons).make("cmdNothing", &form), std::logic_error);

    walk({{"",
           "windowTitle=Cine Disc Viewer; FraTree.title=Patient List..; CurrentFolder=; WheelPresent=true"},
          {"", "cmdPatBack.toolTip=Previous Patient; Command2.toolTip=Next Patient; Option1.toolTip="},
          {"", "CmdStudyBack.toolTip=Previous Patient; cmdStudyNext.toolTip=Next Patient"},
          {"", "cmdSerBack.toolTip=Previous Series; cmdSerNext.toolTip=Next Series"},
          {"", "cmdSeriesBack.toolTip=Previous Series; cmNext.toolTip=Next Series"},
          {"", "cmdPreviousSeries.toolTip=Previous Frame; cmdNextSeries.toolTip=Next Frame"},
          {"", "Slider1.minimum=0; Slider1.maximum=10; Slider1.value=5; Slider1.toolTip=Speed Bar"},
          {"", "Slider2.minimum=1; Slider2.maximum=10; sb1.minimum=1; sb1.maximum=32767; sb1.value=1"},
          {"", "Timer1.interval=50; Timer1.active=false; Timer4.interval=50; Timer4.active=false"},
          {"", "FraTree.visible=true; Frame9.visible=true; Frame8.visible=false; ezTest.visible=false"},
          {"", "Frame5.visible=false; Frame6.visible=false; File1.Pattern=*.dcm"},
          {"", "cmdPlay.enabled=false; cmdNext.enabled=false; cmdExport.enabled=false; cmNext.enabled=false"},
          {"", "Option4.checked=true; Option9.checked=true; Option3.checked=true"},
          {"", "ezDicom.MouseMode=1; ezDicom.BackgroundFill=true; ezDicom.BackgroundColor=0"}});
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(find<ezDICOMX>(QString("thumb(%1)").arg(i)).role(), ViewRole::Preview);
    EXPECT_EQ(find<ezDICOMX>("ezTest").role(), ViewRole::Probe);
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
            SCOPED_TRACE(testing::Message()
                         << letters << " on " << screen.width() << " x " << screen.height());
            EXPECT_EQ(scaled.boundedTo(shown.size()), shown.size());
            for (const bool stills : {true, false}) {
                shown.findChild<QWidget*>("Frame8")->setVisible(stills);
                shown.findChild<QWidget*>("Frame9")->setVisible(!stills);
                QCoreApplication::processEvents();
                for (const QWidget* widget : shown.findChildren<QWidget*>()) {
                    const QString name = widget->objectName();
                    if (!widget->isVisible() || name.isEmpty() || name.startsWith("qt_")) continue;
                    const QRect place(widget->mapTo(&shown, QPoint()), widget->size());
                    EXPECT_TRUE(shown.rect().contains(place)) << qPrintable(name);
                    EXPECT_FALSE(place.isEmpty()) << qPrintable(name);
                    const bool holdsText = qobject_cast<const QAbstractButton*>(widget);
                    const QSize needed = holdsText ? widget->sizeHint() : widget->minimumSizeHint();
                    EXPECT_EQ(place.size().expandedTo(needed), place.size()) << qPrintable(name);
                }
            }
        }
    }
    QApplication::setFont(usual);
}

TEST_F(Form1Test, PartsKeepTheirPlaces) {
    const auto placeOf = [this](const QString& name) {
        const QWidget& widget = find(name);
        return QRect(widget.mapTo(&form, QPoint()), widget.size());
    };
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
    EXPECT_GT(placeOf("cmdExit").left(), placeOf("Command3").right() + 40) << "lest it be hit by mistake";
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
    for (const QSize size : {QSize(1280, 900), QSize(950, 1500)}) {
        settle(size);
        for (int i = 0; i < 5; ++i) {
            const QSize preview = find(QString("thumb(%1)").arg(i)).size();
            EXPECT_NEAR(preview.width(), preview.height(), 2);
        }
    }
    EXPECT_GT(placeOf("thumb(0)").top(), placeOf("ezDicom").bottom());
    EXPECT_GT(placeOf("ezDicom").width(), 900) << "an upright window has the previews below";
    // However the two share the room, the corner words have theirs.
    find("FraTree").show();
    form.findChild<QSplitter*>()->setSizes({100000, 0});
    QCoreApplication::processEvents();
    EXPECT_GE(find("ezDicom").width(), CornerText::leastWidth());
    EXPECT_TRUE(form.rect().contains(placeOf("ezDicom")));
}

TEST_F(Form1Test, OpensAPatientPlaysStepsAndShowsStills) {
    const QString name = "Cine <b>A</b> & Co";
    walk({{"click Open; node 0", "cmdPlay.enabled=true; cmNext.enabled=true; FraTree.visible=false"},
          {"", "ezDicom.FileName=Study1/Series1/1.dcm; lblImg.text=Image : 1/7; Label5.text=" + name},
          {"", "PatientsFolder=/Dicom; CurrentFolder=/Dicom/Patient000; HasStudyFolders=true"},
          {"", "ThumbFillCount=4; PatientCounter=2; StillsMode=false; Label15.text=" + name +
                   " Study1 Series1"}});
    // The clock runs by itself, and each of its ticks moves picture, slider and label together.
    EXPECT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 3; }));
    EXPECT_EQ(property("Slider2", "value"), view("CurrentFrame"));
    EXPECT_EQ(property("lblFra", "text"), "Frame :" + view("CurrentFrame").toString());
    walk({{"click cmdStop", "Timer4.active=false"},
          {"Slider1.value=9", "Timer4.interval=10"},
          {"Slider2.value=20", "ezDicom.CurrentFrame=20"},
          {"click cmdNextImage", "ezDicom.FileName=Study1/Series1/2.dcm"},
          {"click thumb(4)", "ezDicom.FileName=Study1/Series1/5.dcm; Timer4.active=true"},
          {"click cmdStop; roll sb1 -1200", "sb1.value=6"},  // one step a roll
          {"roll thumb(2) -1", "sb1.value=7"},
          {"roll sb1 120", "sb1.value=6"},
          {"roll sb1 0", "sb1.value=6"},
          {"click cmNext", "ezDicom.FileName=Study1/Series2/1.dcm"},
          {"click cmdStudyNext", "Label5.text=Stills; Frame8.visible=true; StillsMode=true"},
          {"click cmdNextSeries", "ezDicom.FileName=Study1/Series1/2.dcm; lblSeries.text=Image :2/3"}});
}

TEST_F(Form1Test, ToolsAndMenusWork) {
    openPatient();
    walk({{"choose mnuPlay", "Timer4.active=true"}, {"choose mnuStop", "Timer4.active=false"}});
    expectEveryDisplayToolWorks();
    find("FraTree").show();
    expectEscapeHidesThePopUps({"", "ezDicom", "sb1", "TreeView1", "Slider2", "cmdInvert"});
    walk({{"choose mnuReverse", "Option10.checked=true; Option9.checked=false"},
          {"choose mnuStop; Slider2.value=9; choose mnuNextSlice", "ezDicom.CurrentFrame=10"}});
}

TEST_F(Form1Test, WhatIsInForceIsMarkedWhoeverPutIt) {
    openPatient();
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
        return find(name).grab().toImage().pixel(name.startsWith("thumb") ? 0 : 3, 15);
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
        std::map<QString, QRgb> colours;
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
    openPatient();
    DiscBuilder::write(disc.path({"CD.xml"}), "<cd><p><n>Somebody else</n></p></cd>");
    find("FraTree").show();
    EXPECT_EQ(fatalErrorOf([&] { clickNode(0); }), 91);
    click("cmdStop");
    ASSERT_TRUE(QDir(disc.path()).removeRecursively());
    for (const char* button : {"cmNext", "cmdSeriesBack", "cmdStudyNext", "CmdStudyBack", "cmdNextImage",
                               "cmdPrevImage", "cmdNext", "cmdPrev", "thumb(1)"})
        click(button);
    form.behaviour().cine.Timer4_Timer();
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
