#include "app/CommandTable.h"
#include "app/Main.h"
#include "control/CornerText.h"
#include "control/ezDICOMX.h"
#include "tests/app/Form1Fixture.h"

#include <QMenuBar>
#include <QPointer>
#include <QScrollBar>
#include <QSplitter>
#include <QTimer>

namespace cinedisc::test {
namespace {

TEST_F(Form1Test, StartsAsDesigned) {
    for (const auto* button : form.findChildren<QAbstractButton*>()) {
        if (!button->text().isEmpty() || button->objectName().startsWith("qt_")) continue;
        EXPECT_FALSE(button->icon().isNull()) << qPrintable(button->objectName());
    }
    EXPECT_EQ(outline(form.menuBar()->actions()).toStdString(),
              "mnuFile=&File{mnuOpen=&Open|mnuOpenCD=OpenCD|mnuExport=Export!|mnuExit=E&xit}|"
              "mnuEdit=&Edit{mnuCopy=&Copy Image!Ctrl+C|mnuCopyHeader=Copy Header!}|"
              "mnuTools=&Tools{mnuWindow=&Window+|mnuPanning=&Panning-|mnuSmooth=&Smooth+|"
              "mnuMagnify=&Magnify-|mnuInvert=&Invert-|mnuLabel=&Label-|mnuHeader=&Header-|"
              "mnuZoom=&Zoom{mnuBestFit=&Bestfit-|mnu50=50%-|mnu100=100%+|mnu150=150%-|mnu200=200%-}|"
              "mnuOverLay=&Overlay{mnuNone=None-|mnuBlack=&Black -|mnuWhite=&White+}|"
              "mnuCine=&Cine{mnuReverse=&Reverse!-|mnuStop=&Stop!-|mnuPlay=&Play!-|mnuNextSlice=Next "
              "Slice!|mnuPreviousSlice=Previous Slice !|mnuNext=Next Image!|mnuPrevious=Previous "
              "Image!}}|mnuHelp=&Help{mnuAbout=&About}");
    EXPECT_THROW(CommandHandlers()("cmdNothing"), std::logic_error);
    EXPECT_THROW(ButtonTable(form1Faces().buttons).make("cmdNothing", &form), std::logic_error);

    walk({{"",
           "windowTitle=Cine Disc Viewer; FraTree.title=Patient List..; CurrentFolder=; WheelPresent=true"},
          {"", "Slider1.minimum=0; Slider1.maximum=10; Slider1.value=5; Slider1.toolTip=Speed Bar"},
          {"", "Slider2.minimum=1; Slider2.maximum=10; sb1.minimum=1; sb1.maximum=32767; sb1.value=1"},
          {"", "Timer1.interval=50; Timer1.active=false; Timer4.interval=50; Timer4.active=false"},
          {"", "Frame5.visible=false; Frame6.visible=false; ezTest.visible=false; File1.Pattern=*.dcm"},
          {"", "cmdPlay.enabled=false; cmdNext.enabled=false; cmdExport.enabled=false; cmNext.enabled=false"},
          {"", "Option4.checked=true; Option9.checked=true; Option3.checked=true"}});
    settle({1280, 900});
    EXPECT_EQ(rowsOf(*form.centralWidget()),
              "8 8 Open=Open Disc 4 cmdExport=Export.. 8 | 8 cmdWindow=Window 4 cmdMagnify=Magnify 4 "
              "cmdLabel=Label 4 cmdPanning=Panning 8 | 8 cmdZoom=Zoom 4 cmdInvert=Invert 4 "
              "cmdSmooth=Smooth 4 cmdHeader=Header 4 cmdOverlay=Overlay 8 | 8 Command3=Command3 _ "
              "cmdExit=Exit 8\n8 _ thumb(0)+ _\n4 _ thumb(1)+ _\n/ _ qt_splithandle_ezDicom 0 ezDicom+ 8 "
              "thumb(2)+ 4 sb1 8\n/ _ TreeView1+ _\n/ _ thumb(3)+ _\n4 _ thumb(4)+ _\n8 8 <Cine+ 17 "
              "Label8<Frame Scroll Bar _ lblFra>Frame 17 Label9<Image Scroll Bar+ _\n/ _ "
              "CmdStudyBack=Previous Patient 4 Label13^Study Scroll Bar+ 4 cmdStudyNext=Next Patient 8\n"
              "/ 8 cmdReverse=Play backward 4 cmdStop=Stop 4 cmdPlay=Play forward 17 cmdPrev=Previous "
              "frame 4 Slider2+ 4 cmdNext=Next frame 17 cmdPrevImage=Previous image file 4 lblImg^Image "
              "4 cmdNextImage=Next image file _\n/ _ | _ | _ | _\n_ _ cmdSeriesBack=Previous Series 4 "
              "Label15^Series Scroll Bar+ 4 cmNext=Next Series 8\n/ 8 Option9=Forward 8 Option10=Reverse "
              "17 Option4=Continuos 4 Label2<Loop 12 Option11=Continuos 4 Label3<Continuous _ <Speed Bar "
              "4 Slider1+ 4 chkRecordedRate=Recorded 17 lblRate<+ _\n8");
    click("cmdZoom");
    EXPECT_TRUE(find("Frame5").isAncestorOf(form.childAt(find("Frame5").geometry().bottomRight())));
    EXPECT_EQ(rowsOf(find("Frame5")),
              "5 5 cmdFit(0)=Best Fit 5\n1 5 cmdFit(2)=50% 5\n1 5 cmdFit(1)=100% 5\n1 5 cmdFit(3)=150% "
              "5\n1 5 cmdFit(4)=200% 5\n5");
    click("cmdOverlay");
    EXPECT_EQ(rowsOf(find("Frame6")), "9 9 Option1=None 9\n8 9 Option2=Black 9\n8 9 Option3=White 9\n9");
    walk({{"click ezDicom", "Frame5.visible=false; Frame6.visible=false"}});
    find("Frame9").hide();
    find("Frame8").show();
    QCoreApplication::processEvents();
    EXPECT_EQ(rowsOf(find("Frame8")).substr(1),
              " _ ^Patient+ 17 ^Series+ 17 ^Image+ _\n/ _ | _ | _\n_ _ cmdPatBack=Previous Patient 4 "
              "Label5^Study Scroll Bar+ 4 Command2=Next Patient 17 cmdSerBack=Previous Series 4 "
              "Label6^Series Scroll Bar+ 4 cmdSerNext=Next Series 17 cmdPreviousSeries=Previous Frame 4 "
              "lblSeries^ 4 cmdNextSeries=Next Frame _\n_ 0 Label1^+ 0\n0");
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
            const QSize scaled = screen / ScreenFit::scaleFor(screen, 9).all;
            EXPECT_EQ(ScreenFit::scaleFor(screen, 1).all, 1) << "less than a pixel a unit is not drawn right";
            fit.fitTo(scaled);
            shown.resize(shown.minimumSize());
            SCOPED_TRACE(testing::Message()
                         << letters << " on " << screen.width() << " x " << screen.height());
            EXPECT_EQ(scaled.boundedTo(shown.size()), shown.size());
            for (const bool stills : {true, false}) {
                shown.findChild<QWidget*>("Frame8")->setVisible(stills);
                shown.findChild<QWidget*>("Frame9")->setVisible(!stills);
                QCoreApplication::processEvents();
                const auto parts = partsOf(*shown.centralWidget());
                for (const auto& [part, place] : parts.asKeyValueRange())
                    for (const auto& [other, at] : parts.asKeyValueRange())
                        EXPECT_EQ(place.intersects(at), part == other) << qPrintable(part->objectName());
                for (const QWidget* widget : shown.findChildren<QWidget*>()) {
                    const QString name = widget->objectName();
                    if (!widget->isVisible() || name.isEmpty() || name.startsWith("qt_")) continue;
                    const QRect place(widget->mapTo(&shown, QPoint()), widget->size());
                    EXPECT_TRUE(shown.rect().contains(place)) << qPrintable(name);
                    EXPECT_FALSE(place.isEmpty()) << qPrintable(name);
                    const bool holdsText =
                        qobject_cast<const QAbstractButton*>(widget) || name.startsWith("lbl");
                    const QSize needed = holdsText ? widget->sizeHint() : widget->minimumSizeHint();
                    EXPECT_EQ(place.size().expandedTo(needed), place.size()) << qPrintable(name);
                }
            }
        }
    }
    QApplication::setFont(usual);
}

TEST_F(Form1Test, ColoursAreReadableAndScrollBarsSeen) {
    using P = QPalette;
    const P colours = QApplication::palette();
    constexpr P::ColorRole texts[] = {P::WindowText,      P::Text,        P::Text,
                                      P::ButtonText,      P::ToolTipText, P::HighlightedText,
                                      P::PlaceholderText, P::Link,        P::BrightText};
    constexpr P::ColorRole grounds[] = {P::Window,    P::Base, P::AlternateBase, P::Button, P::ToolTipBase,
                                        P::Highlight, P::Base, P::Window,        P::Button};
    for (int i = 0; i < 9; ++i) {
        const QRgb under = colours.color(grounds[i]).rgb();
        EXPECT_GE(contrast(colours.color(texts[i]).rgb(), under), 4.5) << i;
        EXPECT_EQ(contrast(colours.color(P::Disabled, texts[i]).rgb(), under) < 4, i < 5) << i << " disabled";
    }
    for (const Qt::Orientation lies : {Qt::Vertical, Qt::Horizontal}) {
        QScrollBar bar(lies);
        const int edge = qMin(bar.sizeHint().width(), bar.sizeHint().height()), middle = edge / 2;
        const int length = 15 * edge, tip = middle - 2, foot = middle + 1, side = middle - 3;
        bar.resize(lies == Qt::Vertical ? QSize(edge, length) : QSize(length, edge));
        for (const int most : {10, 0}) {
            bar.setRange(0, most);
            bar.setPageStep(10);
            QImage image = bar.grab().toImage();
            if (lies == Qt::Horizontal) image = image.transformed(QTransform(0, 1, 1, 0, 0, 0));
            const auto seen = [&](int x, int y) {
                return contrast(image.pixel(x, y), image.pixel(0, 0)) > 2;
            };
            EXPECT_EQ(seen(middle, 2 * edge), most > 0) << "the handle, where there is something to scroll";
            EXPECT_FALSE(seen(middle, length - 2 * edge));
            EXPECT_TRUE(seen(side, foot) && seen(side, length - 1 - foot)) << "arrows away from each other";
            EXPECT_FALSE(seen(side, tip) || seen(side, length - 1 - tip));
        }
    }
}

TEST_F(Form1Test, PartsKeepTheirPlaces) {
    const auto placeOf = [this](const QString& name) {
        const QWidget& widget = find(name);
        return QRect(widget.mapTo(&form, QPoint()), widget.size());
    };
    find("FraTree").hide();
    for (const QSize size : {QSize(1280, 900), QSize(950, 1500)}) {
        settle(size);
        EXPECT_NEAR(find("thumb(2)").width(), find("thumb(2)").height(), 2);
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
          {"", "PatientCounter=2; Label15.text=" + name + " Study1 Series1"}});
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
          {"click cmdNextSeries", "ezDicom.FileName=Study1/Series1/2.dcm; lblSeries.text=Image :2/3"},
          {"choose mnuNext", "ezDicom.FileName=Study1/Series1/3.dcm; lblSeries.text=Image :3/3"}});
}

TEST_F(Form1Test, ToolsAndMenusWork) {
    openPatient();
    walk({{"choose mnuPlay", "Timer4.active=true"}, {"choose mnuStop", "Timer4.active=false"}});
    expectEveryDisplayToolWorks();
    find("FraTree").show();
    for (const char* place : {"ezDicom", "sb1", "TreeView1", "cmdInvert"})
        walk({{QString("click cmdZoom; focus %1; key Esc").arg(place), "Frame5.visible=false"}});
    walk({{"choose mnuReverse", "Option10.checked=true; Option9.checked=false"},
          {"choose mnuStop; Slider2.value=9; choose mnuNextSlice", "ezDicom.CurrentFrame=10"}});
}

TEST_F(Form1Test, WhatIsInForceIsMarkedWhoeverPutIt) {
    openPatient();
    walk({{"ezDicom.BestFit=false; ezDicom.MouseMode=4", "cmdPanning.active=true; cmdWindow.active=false"},
          {"ezDicom.MouseMode=2", "cmdPanning.active=false; cmdWindow.active=false; mnuWindow.checked=false"},
          {"ezDicom.MouseMode=5", "cmdLabel.active=true; mnuLabel.checked=true"},
          {"ezDicom.Polarity=-1", "cmdInvert.active=true; mnuInvert.checked=true"},
          {"ezDicom.ZoomPercent=50", "cmdFit(2).active=true; mnu50.checked=true; cmdFit(1).active=false"},
          {"ezDicom.ZoomPercent=120", "cmdFit(2).active=false; mnu50.checked=false"},
          {"ezDicom.ZoomPercent=50; ezDicom.BestFit=true", "cmdFit(2).active=false; mnuBestFit.checked=true"},
          {"ezDicom.BackgroundFill=false", "mnuNone.checked=true; mnuWhite.checked=false"},
          {"choose mnuNone; choose mnuLabel; choose mnuStop", "mnuNone.checked=true; mnuLabel.checked=true"},
          {"", "mnuStop.checked=true; cmdStop.active=true; cmdPlay.active=false"}});
    find<QTimer>("Timer4").start();
    walk(
        {{"", "cmdPlay.active=true; mnuPlay.checked=true; cmdStop.active=false"},
         {"Option10.checked=true", "cmdReverse.active=true; mnuReverse.checked=true; cmdPlay.active=false"}});
    const auto colour = [this](const QString& name) {
        return find(name).grab().toImage().pixel(name.startsWith("thumb") ? 0 : 3, 15);
    };
    for (const auto& [marked, other] :
         {std::pair{"cmdLabel", "cmdMagnify"}, {"cmdInvert", "cmdHeader"}, {"thumb(0)", "thumb(1)"}})
        EXPECT_GE(contrast(colour(marked), colour(other)), 3) << marked;
    click("cmdStudyNext");
    click("cmdNextSeries");
    EXPECT_TRUE(find<ezDICOMX>("thumb(0)").isMarked()) << "it stands for the series";
}

/// Whatever the commands do: here the view is given another patient's file past all of them.
TEST_F(Form1Test, TheViewWarnsByItselfOfAnotherPatientsPicture) {
    const auto warns = [this] {
        return form.findChild<QWidget*>("wrongPatientBar") && find("wrongPatientBar").isVisible();
    };
    const auto copied = [this] {
        choose("mnuCopy");
        return QGuiApplication::clipboard()->image();
    };
    click("Open");
    QWidget& ezDicom = find("ezDicom");
    const QString others = disc.path({"Dicom", "Patient001", "Study1", "Series2", "1.dcm"});
    ezDicom.setProperty("FileName", others);
    EXPECT_FALSE(warns());  // nobody's name is shown yet
    const QImage plain = copied();
    clickNode(0);
    click("cmdStop");
    EXPECT_FALSE(warns());
    for (const QString& path : {others, disc.path({"Dicom", "Patient000", "..", "Patient001", "x"}),
                                disc.path({"Dicom", "Patient0000", "1.dcm"}), QString("/1.dcm")}) {
        ezDicom.setProperty("FileName", path);
        EXPECT_TRUE(warns()) << qPrintable(path);
        EXPECT_EQ(view("FileName"), path);
    }
    ezDicom.setProperty("FileName", others);
    EXPECT_EQ(copied(), plain);
    choose("mnuHeader");
    EXPECT_TRUE(warns());
    EXPECT_GE(find("headerPage").geometry().top(), find("wrongPatientBar").geometry().bottom());
    const QImage bar = find("wrongPatientBar").grab().toImage();
    EXPECT_EQ(bar.pixelColor(2, 2), QColor(0xc4, 0x00, 0x6a));
    EXPECT_GE(bar.width() + 4, int(ezDicom.width() * bar.devicePixelRatio()));
    choose("mnuHeader");
    walk({{"click cmdStudyNext", "Label5.text=Stills"}});  // to the patient whose file it is
    EXPECT_FALSE(warns());
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
    const QPointer<Form1> window = MainForm;
    window->close();
    EXPECT_EQ(MainForm, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.isNull(); }));
}

}  // namespace
}  // namespace cinedisc::test
