#pragma once

#include "viewerwindow/CommandRow.h"

namespace cinedisc {

class ViewerBehaviour;

/// The buttons and menu commands that both viewer windows have.
std::span<const CommandRow<ViewerBehaviour>> viewerCommands();

}  // namespace cinedisc
