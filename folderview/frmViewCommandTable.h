#pragma once

#include "viewerwindow/Commands.h"

namespace cinedisc {

class frmViewBehaviour;

/// The commands that only the folder viewer has, and the buttons that look different there.
std::span<const CommandRow<frmViewBehaviour>> frmViewCommandTable();

/// The buttons and menus of the folder viewer.
CommandFaces frmViewFaces();

}  // namespace cinedisc
