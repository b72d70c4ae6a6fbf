#pragma once

#include "panels/ViewerPanels.h"

namespace cinedisc {

class PatientStepPanel;
class StillsPanel;
class TreePanel;

/// The controls of the main window: those of every viewer window, and those of the disc's catalogue.
class Form1Layout : public ViewerPanels {
  public:
    explicit Form1Layout(QMainWindow& window);

    TreePanel* FraTree;
    ezDICOMX* ezTest;  ///< the probe, never shown
    PatientStepPanel* Frame1;
    StillsPanel* Frame8;

  private:
    Form1Layout(QMainWindow& window, const ButtonTable& buttons);
    QWidget* treeAndPicture();
    QWidget* stepArea();
};

}  // namespace cinedisc
