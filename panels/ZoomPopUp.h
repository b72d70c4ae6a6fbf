#pragma once

#include "panels/ButtonTable.h"
#include "platform/widgets/PopUpPanel.h"

namespace cinedisc {

/// Frame5: the choices of the magnification, cmdFit(0) to cmdFit(4).
class ZoomPopUp final : public PopUpPanel {
    Q_OBJECT

  public:
    ZoomPopUp(const ButtonTable& buttons, QWidget& button, QWidget& surface);
};

}  // namespace cinedisc
