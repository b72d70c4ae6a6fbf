#pragma once

#include "platform/RunTimeError.h"

namespace cinedisc {

/// Shows the message box of an untrapped run-time error, and when it is closed ends the process with
/// status 1.
[[noreturn]] void tellErrorAndEnd(const RunTimeError& error);

}  // namespace cinedisc
