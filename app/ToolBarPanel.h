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

    /// Marks the button of the mouse tool in force, a ViewerControl::Mouse; none for a tool without a button.
    void showMouseTool(int mouseMode);

    /// Those that open a pop-up under themselves.
    QPushButton* cmdZoom = nullptr;
    QPushButton* cmdOverlay = nullptr;
    ElidedLabel* Label1 = nullptr;
};

}  // namespace cinedisc
