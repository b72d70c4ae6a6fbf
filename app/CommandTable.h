#pragma once

#include "viewerwindow/CommandRow.h"

namespace cinedisc {

class Form1;
class Form1Behaviour;

/// The buttons and menu commands of the disc, which only the main window has.
std::span<const CommandRow<Form1Behaviour>> discCommands();
/// Those that need the window itself.
std::span<const CommandRow<Form1>> windowCommands();

}  // namespace cinedisc
