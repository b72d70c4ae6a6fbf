#pragma once

#include "panels/ButtonTable.h"

#include <QPushButton>
#include <QWidget>

#include <span>
#include <vector>

class QBoxLayout;

namespace cinedisc {

/// What the windows' rows of buttons differ in; the buttons are given by name.
struct ToolBarDesign {
    const char* name;  ///< of the whole row, "" for none
    const char* open;
    std::span<const char* const> lastGroup;  ///< behind the display tools
    const char* exit;
};

/// The row of buttons above the picture.
class ToolBarPanel final : public QWidget {
    Q_OBJECT

  public:
    ToolBarPanel(const ButtonTable& buttons, const ToolBarDesign& design, QWidget* parent = nullptr);

    /// Puts the groups that this width has no room for into rows below.
    void arrangeFor(int width);

    /// Those that open a pop-up under themselves.
    QPushButton* cmdZoom = nullptr;
    QPushButton* cmdOverlay = nullptr;

  private:
    void arrange(const std::vector<int>& rowOf);
    QWidget* addGroup(const ButtonTable& buttons, std::span<const char* const> names);

    std::vector<QWidget*> groups_;
    std::vector<QWidget*> lines_;
    std::vector<QBoxLayout*> rows_;
    std::vector<int> rowOf_;  ///< of each group
};

}  // namespace cinedisc
