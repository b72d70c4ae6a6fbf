#include "panels/ViewerPanels.h"

#include "control/CornerText.h"
#include "control/ezDICOMX.h"
#include "panels/BackgroundPopUp.h"
#include "panels/PanelParts.h"
#include "panels/PictureRow.h"
#include "panels/ScreenFit.h"
#include "panels/StripPanel.h"
#include "panels/ZoomPopUp.h"
#include "platform/widgets/Icon.h"

#include <QMainWindow>

namespace cinedisc {

namespace {

constexpr int tickMilliseconds = 50;

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
    window.setCentralWidget(surface);
    new ScreenFit(window, [bar = toolBar, cine = cinePanel](int width) {
        bar->arrangeFor(width - 2 * panelGap);
        cine->arrangeFor(width - 2 * panelGap);
    });
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
