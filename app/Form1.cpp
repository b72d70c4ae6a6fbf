#include "app/Form1.h"

#include "app/BackgroundPopUp.h"
#include "app/CinePanel.h"
#include "app/CommandTable.h"
#include "app/Main.h"
#include "app/MenuTable.h"
#include "app/StripPanel.h"
#include "app/ToolBarPanel.h"
#include "control/ezDICOMX.h"
#include "platform/Paths.h"
#include "platform/widgets/EventGuard.h"
#include "platform/widgets/MenuBuilder.h"
#include "platform/widgets/NamedButton.h"
#include "platform/widgets/OptionHandler.h"
#include "platform/widgets/TextViewerLauncher.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QScrollBar>
#include <QSlider>

namespace cinedisc {

namespace {

QWidget* makeViewer(QWidget* parent, ViewerRole role) {
    switch (role) {
        case ViewerRole::MainView:
            return new ezDICOMX(ViewRole::Main, parent);
        case ViewerRole::Preview:
            return new ezDICOMX(ViewRole::Preview, parent);
        case ViewerRole::Probe:
            break;
    }
    return new ezDICOMX(ViewRole::Probe, parent);
}

QList<QWidget*> wheelWidgets(const StripPanel& strip) {
    QList<QWidget*> widgets(strip.thumb.begin(), strip.thumb.end());
    widgets << strip.sb1;
    return widgets;
}

}  // namespace

Form1::Form1(const QString& programFolder)
    : programFolder_(programFolder),
      layout_(*this, makeViewer),
      controls_(*this, layout_, programFolder),
      wheel_(wheelWidgets(*layout_.strip)),
      formatChooser_(this),
      behaviour_(controls_.viewer, controls_.disc, controls_.tools,
                 {formatChooser_, [this](const QString& format) { mainView().putExportFormat(format); }},
                 wheel_) {
    setObjectName("Form1");
    MenuBuilder::build(*menuBar(), mainMenuTable(), [this](const QString& name) { runCommand(name); });
    routeButtons(*this, [this](const QString& name) { runCommand(name); });
    connectEvents();
    behaviour_.Form_Load();
}

ezDICOMX& Form1::mainView() { return static_cast<ezDICOMX&>(*layout_.ezDicom); }

void Form1::connectEvents() {
    const auto guarded = [](auto handler) { return EventGuard::guarded(handler); };
    connect(layout_.strip->sb1, &QScrollBar::valueChanged, this,
            guarded([this] { behaviour_.sb1_Change(); }));
    connect(layout_.Frame9->Slider1, &QSlider::valueChanged, this,
            guarded([this] { behaviour_.cine.Slider1_Change(); }));
    connect(layout_.Frame9->Slider2, &QSlider::valueChanged, this,
            guarded([this] { behaviour_.frames.Slider2_Change(); }));
    connect(layout_.Timer4, &QTimer::timeout, this, guarded([this] {
                behaviour_.cine.Timer4_Timer();
                showMouseTool();
            }));
    connect(layout_.Timer1, &QTimer::timeout, this, guarded([this] { behaviour_.cine.Timer1_Timer(); }));
    connectOption(*layout_.Frame9->Option4, [this] {
        behaviour_.cine.Option4_Click();
        showMouseTool();
    });
    connectOption(*layout_.Frame6->Option1, [this] { behaviour_.tools.Option1_Click(); });
    connectOption(*layout_.Frame6->Option2, [this] { behaviour_.tools.Option2_Click(); });
    connectOption(*layout_.Frame6->Option3, [this] { behaviour_.tools.Option3_Click(); });
    controls_.TreeView1.onNodeClick([this](int node) { behaviour_.patients.TreeView1_NodeClick(node); });
    for (int i = 0; i < StripPanel::previewCount; ++i) {
        connect(static_cast<ezDICOMX*>(layout_.strip->thumb[static_cast<std::size_t>(i)]), &ezDICOMX::clicked,
                this, guarded([this, i] { behaviour_.loader.LoadImage(i); }));
    }
}

void Form1::runCommand(const QString& name) {
    for (const CommandRow& row : commandTable()) {
        if (name == QLatin1String(row.name)) row.run(*this);
    }
    showMouseTool();
}

void Form1::showMouseTool() {
    const int mode = mainView().MouseMode();
    if (mode == shownMouseMode_) return;
    shownMouseMode_ = mode;
    layout_.toolBar->showMouseTool(mode);
}

void Form1::showLicence() {
    TextViewerLauncher::open(findIgnoringCase(programFolder_, {"license.txt"}).trimmed());
}

void Form1::closeEvent(QCloseEvent* event) {
    behaviour_.Form_Unload();
    StripWheel::setMainScrollBar(nullptr);
    MainForm = nullptr;
    event->accept();
}

}  // namespace cinedisc
