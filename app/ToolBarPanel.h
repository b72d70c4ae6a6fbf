#pragma once

#include "platform/widgets/ElidedLabel.h"

#include <QPushButton>
#include <QWidget>

namespace cinedisc {

/// The row of buttons above the picture, with the folder label in the room that they leave.
class ToolBarPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit ToolBarPanel(QWidget* parent = nullptr);

    /// Those that open a pop-up under themselves.
    QPushButton* cmdZoom = nullptr;
    QPushButton* cmdOverlay = nullptr;
    ElidedLabel* Label1 = nullptr;
};

}  // namespace cinedisc
