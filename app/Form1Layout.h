#pragma once

#include "app/ViewerFactory.h"

#include <QTimer>
#include <QWidget>

class QMainWindow;

namespace cinedisc {

class BackgroundPopUp;
class CinePanel;
class StillsPanel;
class StripPanel;
class ToolBarPanel;
class TreePanel;
class ZoomPopUp;

/// Fills the main window with its controls, each under its own name and with its design values. The window
/// owns them all; nothing is connected yet.
class Form1Layout {
  public:
    Form1Layout(QMainWindow& window, const ViewerFactory& makeViewer);

    ToolBarPanel* toolBar = nullptr;
    TreePanel* FraTree = nullptr;
    QWidget* ezDicom = nullptr;
    QWidget* ezTest = nullptr;  ///< the probe, never shown
    StripPanel* strip = nullptr;
    CinePanel* Frame9 = nullptr;
    StillsPanel* Frame8 = nullptr;
    ZoomPopUp* Frame5 = nullptr;
    BackgroundPopUp* Frame6 = nullptr;
    QTimer* Timer1 = nullptr;
    QTimer* Timer4 = nullptr;

  private:
    QWidget* pictureRow(QWidget* parent, const ViewerFactory& makeViewer);
    QWidget* stepArea(QWidget* parent);
};

}  // namespace cinedisc
