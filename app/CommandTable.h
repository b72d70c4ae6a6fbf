#pragma once

#include "viewerwindow/CommandRow.h"

namespace cinedisc {

class Form1;

/// The buttons and menu commands that only the main window has.
std::span<const CommandRow<Form1>> commandTable();

}  // namespace cinedisc
