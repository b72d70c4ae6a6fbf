#pragma once

#include <QString>

#include <functional>
#include <span>

class QMenuBar;

namespace cinedisc {

enum class MenuKind { Menu, Command };

/// One menu item. A row's parent stands before it; "" is the menu bar.
struct MenuRow {
    const char* name;     ///< object name of the action; of a menu also that of its QMenu
    const char* caption;  ///< "&" marks the access key
    const char* parent;   ///< name of the menu it stands in
    const char* shortcut;
    MenuKind kind;
};

/// Makes the menus of a window from a table.
class MenuBuilder {
  public:
    /// `run` gets the name of the chosen command, under EventGuard.
    static void build(QMenuBar& bar, std::span<const MenuRow> rows,
                      const std::function<void(const QString&)>& run);
};

}  // namespace cinedisc
