#pragma once

#include "panels/CinePanel.h"
#include "panels/ToolBarPanel.h"

#include <QTimer>

class QMainWindow;

namespace cinedisc {

class BackgroundPopUp;
class StripPanel;
class ZoomPopUp;
class ezDICOMX;

/// What the two viewer windows differ in.
struct ViewerDesign {
    QString title;
    ToolBarDesign toolBar;
    CinePanelDesign cinePanel;
};

/// Fills a viewer window with the controls that both windows have, each under its own name and with its
/// design values. The window owns them all; nothing is connected yet. A window's own layout adds what else it
/// has.
class ViewerPanels {
  public:
    ViewerPanels(QMainWindow& window, const ButtonTable& buttons, const ViewerDesign& design);

    QWidget* surface;  ///< holds everything but the menu bar
    ToolBarPanel* toolBar;
    ezDICOMX* ezDicom;
    StripPanel* strip;
    CinePanel* cinePanel;
    ZoomPopUp* Frame5;
    BackgroundPopUp* Frame6;
    QTimer* Timer1;
    QTimer* Timer4;

  protected:
    /// Stacks the tool bar, the picture with the strip beside it, and the steps. `picture` holds the main
    /// view, `steps` the cine panel, or they are these.
    void stack(QWidget& picture, QWidget& steps);
};

}  // namespace cinedisc
