#pragma once

namespace cinedisc {

/// For a handler that waits: draws windows and answers the system, but begins nothing. Keys and buttons, new
/// sizes and closing windows come when the handler has returned, ticks of timers that went by do not.
void drawWindows();

}  // namespace cinedisc
