#pragma once

#include "platform/widgets/MenuBuilder.h"

#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

namespace cinedisc {

/// The main window's menus, captions to the letter: a missing access key and a trailing blank are meant.
std::span<const MenuRow> mainMenuTable();

/// The same menus without the commands of these names.
std::vector<MenuRow> menuTableWithout(std::initializer_list<std::string_view> names);

}  // namespace cinedisc
