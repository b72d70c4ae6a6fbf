#pragma once

#include "platform/widgets/MenuBuilder.h"

#include <span>

namespace cinedisc {

/// The main window's menus, captions to the letter: a missing access key and a trailing blank are meant.
std::span<const MenuRow> mainMenuTable();

}  // namespace cinedisc
