#pragma once

#include "viewerwindow/Commands.h"

namespace cinedisc {

class ViewerBehaviour;

/// The first menu, which begins with commands of the window's own.
inline constexpr MenuRow fileMenu = {"mnuFile", "&File", "", "", MenuKind::Menu};

/// The commands that both viewer windows have. They follow the window's own in its menus.
std::span<const CommandRow<ViewerBehaviour>> viewerCommands();

}  // namespace cinedisc
