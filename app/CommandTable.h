#pragma once

#include "viewerwindow/Commands.h"

namespace cinedisc {

class Form1Behaviour;

/// The commands of the disc, which only the main window has, and the buttons that look different there.
std::span<const CommandRow<Form1Behaviour>> discCommands();
/// The main window's commands that follow the shared ones.
std::span<const CommandRow<Form1Behaviour>> windowCommands();

/// The buttons and menus of the main window.
CommandFaces form1Faces();

}  // namespace cinedisc
