#include "app/CommandTable.h"
#include "app/Form1Layout.h"
#include "app/StillsPanel.h"
#include "app/TreePanel.h"
#include "control/CornerText.h"
#include "control/ezDICOMX.h"
#include "panels/BackgroundPopUp.h"
#include "panels/CinePanel.h"
#include "panels/StripPanel.h"
#include "panels/Theme.h"
#include "panels/ToolBarPanel.h"
#include "panels/ZoomPopUp.h"
#include "tests/support/Captions.h"

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QSplitter>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

/// The main window's controls, not connected with anything.
class LayoutTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { applyTheme(*qApp); }
    void SetUp() override {
        buildMenus(*window.menuBar(), form1Faces().items, [](const QString&) { return [] {}; });
    }

    void showAt(QSize size) {
        window.resize(size);
        window.show();
        QCoreApplication::processEvents();
    }
    /// Where a widget is, in the window.
    QRect placeOf(const QWidget* widget) const {
        return {widget->mapTo(static_cast<const QWidget*>(&window), QPoint()), widget->size()};
    }

    QMainWindow window;
    Form1Layout layout{window};
};

TEST_F(LayoutTest, ControlsCarryTheirCaptionsAndTooltips) {
    EXPECT_EQ(test::captionsOf<QAbstractButton>(window),
              "CmdStudyBack=|Command2=|Command3=Command3|Open=|Option10=Reverse|Option11=Continuos|"
              "Option1=None|Option2=Black|Option3=White|Option4=Continuos|Option9=Forward|cmNext=|"
              "cmdExit=Exit|cmdExport=Export..|cmdFit(0)=Best Fit|cmdFit(1)=100%|cmdFit(2)=50%|"
              "cmdFit(3)=150%|cmdFit(4)=200%|cmdHeader=Header|cmdInvert=Invert|cmdLabel=|cmdMagnify=|"
              "cmdNext=|cmdNextImage=|cmdNextSeries=|cmdOverlay=Overlay|cmdPanning=Panning|cmdPatBack=|"
              "cmdPlay=|cmdPrev=|cmdPrevImage=|cmdPreviousSeries=|cmdReverse=|cmdSerBack=|cmdSerNext=|"
              "cmdSeriesBack=|cmdSmooth=Smooth|cmdStop=Stop|cmdStudyNext=|cmdWindow=|cmdZoom=Zoom");
    EXPECT_EQ(test::captionsOf<QLabel>(window),
              "Label13=Study Scroll Bar|Label15=Series Scroll Bar|Label1=|Label2=Loop|Label3=Continuous|"
              "Label5=Study Scroll Bar|Label6=Series Scroll Bar|Label8=Frame Scroll Bar|"
              "Label9=Image Scroll Bar|lblFra=Frame|lblImg=Image|lblRemark=|lblSeries=");
    for (const char* plain : {"lblImg", "lblFra", "lblSeries"})
        EXPECT_NE(window.findChild<QLabel*>(plain)->textFormat(), Qt::AutoText) << plain;
    EXPECT_EQ(layout.FraTree->title(), "Patient List..");
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        if (!button->text().isEmpty() || button->objectName().startsWith("qt_")) continue;
        EXPECT_FALSE(button->icon().isNull()) << qPrintable(button->objectName());
        EXPECT_FALSE(button->toolTip().isEmpty()) << qPrintable(button->objectName());
    }
    QStringList toolTips;
    for (const char* name : {"cmdPatBack", "Command2", "CmdStudyBack", "cmdStudyNext", "cmdSerBack",
                             "cmdSerNext", "cmdSeriesBack", "cmNext", "cmdPreviousSeries", "cmdNextSeries",
                             "Option1", "Option2", "Option3", "Option9", "Option10"})
        toolTips << window.findChild<QWidget*>(name)->toolTip();
    EXPECT_EQ(toolTips.join('|'),
              "Previous Patient|Next Patient|Previous Patient|Next Patient|"
              "Previous Series|Next Series|Previous Series|Next Series|"
              "Previous Frame|Next Frame|||||");
    test::expectUniqueNames(window);
}

TEST_F(LayoutTest, RangesTimersAndPanelsStartAsDesigned) {
    const auto range = [](const QAbstractSlider* slider) {
        return QList<int>{slider->minimum(), slider->maximum(), slider->value()};
    };
    EXPECT_EQ(range(layout.cinePanel->Slider1), (QList<int>{0, 10, 0}));
    EXPECT_EQ(range(layout.cinePanel->Slider2), (QList<int>{1, 10, 1}));
    EXPECT_EQ(layout.strip->sb1->minimum(), 1);
    EXPECT_EQ(layout.cinePanel->Slider1->toolTip(), "Speed Bar");
    EXPECT_EQ(layout.cinePanel->Slider2->accessibleName(), "Frame Seek Bar");
    for (const char* name : {"Timer1", "Timer4"}) {
        const auto* timer = window.findChild<QTimer*>(name);
        ASSERT_NE(timer, nullptr);
        EXPECT_EQ(timer->interval(), 50);
        EXPECT_FALSE(timer->isActive());
    }
    for (const auto& [panel, hidden] :
         std::initializer_list<std::pair<const QWidget*, bool>>{{layout.FraTree, false},
                                                                {layout.cinePanel, false},
                                                                {layout.Frame8, true},
                                                                {layout.Frame5, true},
                                                                {layout.Frame6, true},
                                                                {layout.ezTest, true}})
        EXPECT_EQ(panel->isHidden(), hidden) << qPrintable(panel->objectName());
    EXPECT_EQ(window.findChildren<ezDICOMX*>().size(), 7);
    for (const ezDICOMX* preview : layout.strip->thumb) EXPECT_EQ(preview->role(), ViewRole::Preview);
    EXPECT_EQ(layout.ezTest->role(), ViewRole::Probe);
    EXPECT_EQ(window.findChild<QWidget*>("thumb(4)"), layout.strip->thumb[4]);
}

TEST_F(LayoutTest, TheOptionGroupsAreIndependent) {
    const CinePanel& cine = *layout.cinePanel;
    for (QRadioButton* option : {cine.Option9, cine.Option4, layout.Frame6->Option3})
        option->setChecked(true);
    EXPECT_TRUE(cine.Option9->isChecked() && cine.Option4->isChecked() &&
                layout.Frame6->Option3->isChecked());
    cine.Option10->setChecked(true);
    cine.Option11->setChecked(true);
    EXPECT_FALSE(cine.Option9->isChecked() || cine.Option4->isChecked());
    EXPECT_TRUE(layout.Frame6->Option3->isChecked());
}

TEST_F(LayoutTest, TheMouseToolInForceIsMarked) {
    for (const auto& [mode, marked] :
         {std::pair{1, "cmdWindow"}, {3, "cmdMagnify"}, {4, "cmdPanning"}, {5, "cmdLabel"}, {2, ""}}) {
        layout.toolBar->showMouseTool(mode);
        QStringList active;
        for (const QPushButton* button : layout.toolBar->findChildren<QPushButton*>())
            if (button->property("active").toBool()) active += button->objectName();
        EXPECT_EQ(active.join(" "), marked);
    }
}

TEST_F(LayoutTest, NothingIsClippedInTheSmallestWindow) {
    for (const bool stills : {false, true}) {
        layout.Frame8->setVisible(stills);
        layout.cinePanel->setVisible(!stills);
        showAt(QSize(1024, 700));
        ASSERT_EQ(window.size(), QSize(1024, 700));
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            const bool holdsText =
                qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLabel*>(widget);
            if (!holdsText || !widget->isVisible() || widget->objectName().startsWith("qt_")) continue;
            EXPECT_TRUE(window.rect().contains(placeOf(widget))) << qPrintable(widget->objectName());
            EXPECT_GE(widget->width(), widget->sizeHint().width()) << qPrintable(widget->objectName());
            EXPECT_GE(widget->height(), widget->sizeHint().height()) << qPrintable(widget->objectName());
        }
    }
}

TEST_F(LayoutTest, ThePictureTakesTheTreesPlaceAndDoesNotMoveWithTheMode) {
    showAt(QSize(1280, 900));
    const QRect besideTree = placeOf(layout.ezDicom);
    const QRect tree = placeOf(layout.FraTree);
    layout.FraTree->hide();
    QCoreApplication::processEvents();
    const QRect alone = placeOf(layout.ezDicom);
    EXPECT_EQ(alone.left(), tree.left());
    EXPECT_EQ(alone.right(), besideTree.right());
    EXPECT_GT(alone.height(), 2 * window.height() / 3);

    layout.cinePanel->hide();
    layout.Frame8->show();
    QCoreApplication::processEvents();
    EXPECT_EQ(placeOf(layout.ezDicom), alone);

    layout.ezDicom->setMinimumHeight(5);
    layout.Frame8->Label5->setText(QString(500, 'W'));
    layout.Frame8->Label1->setText(QString(500, 'W'));
    QCoreApplication::processEvents();
    EXPECT_EQ(placeOf(layout.ezDicom), alone) << "long texts move nothing";
    for (const QWidget* preview : layout.strip->thumb)
        EXPECT_NEAR(preview->width(), preview->height(), 2) << qPrintable(preview->objectName());
    // However the two share the room, the corner words have theirs.
    layout.FraTree->show();
    window.findChild<QSplitter*>()->setSizes({100000, 0});
    QCoreApplication::processEvents();
    EXPECT_GE(layout.ezDicom->width(), CornerText::leastWidth());
}

TEST_F(LayoutTest, PopUpsOpenUnderTheirButtonsOnTopOfThePicture) {
    showAt(QSize(1024, 700));
    layout.Frame5->setVisible(true);
    layout.Frame6->setVisible(true);
    for (const auto& [panel, button] : {std::pair<QWidget*, QWidget*>{layout.Frame5, layout.toolBar->cmdZoom},
                                        {layout.Frame6, layout.toolBar->cmdOverlay}}) {
        EXPECT_FALSE(panel->isWindow());
        EXPECT_EQ(placeOf(panel).left(), placeOf(button).left());
        EXPECT_GT(placeOf(panel).top(), placeOf(button).bottom());
        const QPoint inside = placeOf(panel).center();
        EXPECT_TRUE(panel->isAncestorOf(window.childAt(inside)) || window.childAt(inside) == panel);
    }
}

}  // namespace
}  // namespace cinedisc
