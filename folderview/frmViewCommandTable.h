#pragma once

#include "viewerwindow/CommandRow.h"

namespace cinedisc {

class frmView;

/// The buttons and menu commands that only the folder viewer has.
std::span<const CommandRow<frmView>> frmViewCommandTable();

}  // namespace cinedisc
