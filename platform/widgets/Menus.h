#pragma once

#include <QString>

#include <functional>
#include <span>

class QMenuBar;

namespace cinedisc {

enum class MenuKind { Menu, Command };

/// One menu item. A row's menu stands before it.
struct MenuRow {
    const char* name = "";     ///< object name of the action; of a menu also that of its QMenu
    const char* caption = "";  ///< "&" marks the access key
    const char* menu = "";     ///< name of the menu it stands in, "" for the menu bar
    const char* shortcut = "";
    MenuKind kind = MenuKind::Command;
};

/// Makes the menus of a window. `handlerOf` returns what the command of a name runs; it runs under
/// EventGuard.
void buildMenus(QMenuBar& bar, std::span<const MenuRow> rows,
                const std::function<std::function<void()>(const QString& name)>& handlerOf);

}  // namespace cinedisc
