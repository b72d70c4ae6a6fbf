#include "panels/ViewerPanels.h"

#include "control/CornerText.h"
#include "control/ezDICOMX.h"
#include "panels/BackgroundPopUp.h"
#include "panels/PanelParts.h"
#include "panels/PictureRow.h"
#include "panels/StripPanel.h"
#include "panels/ZoomPopUp.h"
#include "platform/widgets/Icon.h"

#include <QMainWindow>
#include <QScreen>

namespace cinedisc {

namespace {

constexpr QSize smallestWindow(1024, 700);
constexpr QSize firstWindow(1280, 900);
constexpr int tickMilliseconds = 50;

/// Its frame included, the window lies on the screen with all its panels, be the screen ever so small.
QSize sizeFor(const QScreen& screen) {
    constexpr int frame = 36;
    const QSize room = screen.availableSize() - QSize(0, frame);
    return firstWindow.boundedTo(room).expandedTo(smallestWindow);
}

QTimer* makeTimer(QObject& owner, const char* name) {
    auto* timer = new QTimer(&owner);
    timer->setObjectName(name);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setInterval(tickMilliseconds);
    return timer;
}

}  // namespace

ViewerPanels::ViewerPanels(QMainWindow& window, const ButtonTable& buttons, const ViewerDesign& design)
    : surface(new QWidget(&window)),
      toolBar(new ToolBarPanel(buttons, design.toolBar, surface)),
      ezDicom(named(new ezDICOMX(ViewRole::Main, surface), "ezDicom")),
      strip(new StripPanel(surface)),
      cinePanel(new CinePanel(buttons, design.cinePanel, surface)),
      Frame5(new ZoomPopUp(buttons, *toolBar->cmdZoom, *surface)),
      Frame6(new BackgroundPopUp(*toolBar->cmdOverlay, *surface)),
      Timer1(makeTimer(window, "Timer1")),
      Timer4(makeTimer(window, "Timer4")) {
    window.setWindowTitle(design.title);
    window.setWindowIcon(drawnIcon(Icon::Program));
    window.setMinimumSize(smallestWindow);
    window.resize(sizeFor(*window.screen()));
    window.setCentralWidget(surface);
    // The size of what is shown must never move the window's panels.
    ezDicom->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    ezDicom->setMinimumWidth(CornerText::leastWidth());
}

void ViewerPanels::stack(QWidget& picture, QWidget& steps) {
    auto* rows = new QVBoxLayout(surface);
    rows->setContentsMargins(panelGap, panelGap, panelGap, panelGap);
    rows->setSpacing(panelGap);
    rows->addWidget(toolBar);
    rows->addWidget(new PictureRow(picture, *strip, surface), 1);
    rows->addWidget(&steps);
}

}  // namespace cinedisc
