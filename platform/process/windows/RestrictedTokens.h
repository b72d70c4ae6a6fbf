#pragma once

#include "platform/process/windows/Handle.h"

namespace cinedisc {

/// What a confined process may do, as tokens made of this process's own. Both have no privileges and cannot
/// write to what is the user's.
struct RestrictedTokens {
    /// The process's own: whatever has an access list refuses it, files, registry and network among them.
    Handle lasting;
    /// The first thread's until it gives it back: reads what the user may read, to load the program.
    Handle atStart;

    bool areThere() const { return lasting && atStart; }
    static RestrictedTokens make();
};

}  // namespace cinedisc
