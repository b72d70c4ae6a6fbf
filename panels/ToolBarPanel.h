#pragma once

#include "platform/widgets/NamedButton.h"

#include <QPushButton>
#include <QWidget>

#include <span>

class QBoxLayout;

namespace cinedisc {

/// What the windows' rows of buttons differ in.
struct ToolBarDesign {
    const char* name;  ///< of the whole row, "" for none
    ButtonRow open;
    ButtonRow panning;
    std::span<const ButtonRow> lastGroup;  ///< behind the display tools
    ButtonRow exit;
};

/// The row of buttons above the picture.
class ToolBarPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit ToolBarPanel(const ToolBarDesign& design, QWidget* parent = nullptr);

    /// Takes over what stands in the room that the buttons leave.
    void fillRoom(QWidget& widget);

    /// Marks the button of the mouse tool in force, a ViewerControl::Mouse; none for a tool without a button.
    void showMouseTool(int mouseMode);

    /// Those that open a pop-up under themselves.
    QPushButton* cmdZoom = nullptr;
    QPushButton* cmdOverlay = nullptr;

  private:
    QBoxLayout* room_ = nullptr;
};

}  // namespace cinedisc
