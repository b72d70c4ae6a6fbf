#pragma once

#include "panels/ViewerPanels.h"

class QListWidget;

namespace cinedisc {

/// The controls of the folder viewer: those of every viewer window, in frames of its own names, and a list
/// that nothing fills and nobody sees.
class frmViewLayout : public ViewerPanels {
  public:
    explicit frmViewLayout(QMainWindow& window);

    QListWidget* ListView1;

  private:
    frmViewLayout(QMainWindow& window, const ButtonTable& buttons);
};

}  // namespace cinedisc
