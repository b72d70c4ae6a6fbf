#pragma once

namespace cinedisc {

/// Takes from this process, for good, what it does not need to compute: all system calls but those for
/// memory, threads of its own, and reading and writing what is open already; memory beyond a limit; the right
/// to leave a memory image behind when it crashes. False when the system does not do that; then nothing can
/// be relied on.
bool confineThisProcess();

}  // namespace cinedisc
