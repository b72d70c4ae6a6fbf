#include "app/Form1Layout.h"

#include "app/BackgroundPopUp.h"
#include "app/CinePanel.h"
#include "app/PanelParts.h"
#include "app/PictureRow.h"
#include "app/StillsPanel.h"
#include "app/StripPanel.h"
#include "app/ToolBarPanel.h"
#include "app/TreePanel.h"
#include "app/ZoomPopUp.h"
#include "platform/widgets/Picture.h"
#include "platform/widgets/ProgramTitle.h"

#include <QGridLayout>
#include <QMainWindow>
#include <QSplitter>

namespace cinedisc {

namespace {

constexpr QSize smallestWindow(1024, 700);
constexpr QSize firstWindow(1280, 900);
constexpr int treeWidth = 320;
constexpr int tickMilliseconds = 50;

QTimer* makeTimer(QObject& owner, const char* name) {
    auto* timer = new QTimer(&owner);
    timer->setObjectName(name);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setInterval(tickMilliseconds);
    return timer;
}

}  // namespace

Form1Layout::Form1Layout(QMainWindow& window, const ViewerFactory& makeViewer) {
    window.setWindowTitle(programTitle);
    window.setWindowIcon(pictureIcon(Picture::Program));
    window.setMinimumSize(smallestWindow);
    window.resize(firstWindow);

    auto* surface = new QWidget(&window);
    toolBar = new ToolBarPanel(surface);
    auto* rows = new QVBoxLayout(surface);
    rows->setContentsMargins(panelGap, panelGap, panelGap, panelGap);
    rows->setSpacing(panelGap);
    rows->addWidget(toolBar);
    rows->addWidget(pictureRow(surface, makeViewer), 1);
    rows->addWidget(stepArea(surface));
    window.setCentralWidget(surface);

    Frame5 = new ZoomPopUp(*toolBar->cmdZoom, *surface);
    Frame6 = new BackgroundPopUp(*toolBar->cmdOverlay, *surface);
    ezTest = named(makeViewer(surface, ViewerRole::Probe), "ezTest");
    ezTest->hide();
    Timer1 = makeTimer(window, "Timer1");
    Timer4 = makeTimer(window, "Timer4");
}

QWidget* Form1Layout::pictureRow(QWidget* parent, const ViewerFactory& makeViewer) {
    auto* splitter = new QSplitter(Qt::Horizontal, parent);
    FraTree = new TreePanel(splitter);
    ezDicom = named(makeViewer(splitter, ViewerRole::MainView), "ezDicom");
    // The size of what is shown must never move the window's panels.
    ezDicom->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    splitter->addWidget(FraTree);
    splitter->addWidget(ezDicom);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(panelGap);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({treeWidth, firstWindow.width() - treeWidth});
    FraTree->setVisible(true);
    strip = new StripPanel(makeViewer, parent);
    return new PictureRow(*splitter, *strip, parent);
}

QWidget* Form1Layout::stepArea(QWidget* parent) {
    auto* area = new QWidget(parent);
    Frame9 = new CinePanel(area);
    Frame8 = new StillsPanel(area);
    // Both in one place and of one height: the picture does not jump when the mode changes.
    const int height = std::max(Frame8->sizeHint().height(), Frame9->sizeHint().height());
    auto* place = new QGridLayout(area);
    place->setContentsMargins(0, 0, 0, 0);
    place->setRowMinimumHeight(0, height);
    place->addWidget(Frame9, 0, 0);
    place->addWidget(Frame8, 0, 0);
    Frame9->setVisible(true);
    Frame8->setVisible(false);
    return area;
}

}  // namespace cinedisc
