#pragma once

#include "platform/widgets/PopUpPanel.h"

#include <QRadioButton>

namespace cinedisc {

/// Frame6: the choices of the background.
class BackgroundPopUp final : public PopUpPanel {
    Q_OBJECT

  public:
    BackgroundPopUp(QWidget& button, QWidget& surface);

    QRadioButton* Option1 = nullptr;  ///< none
    QRadioButton* Option2 = nullptr;  ///< black
    QRadioButton* Option3 = nullptr;  ///< white
};

}  // namespace cinedisc
