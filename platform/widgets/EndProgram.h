#pragma once

namespace cinedisc {

enum class ExitStatus { Success = 0, Failure = 1 };

/// Ends the program at once from wherever it is called: the windows vanish without their unload events, no
/// destructor runs (a worker may be in the middle of a read from a slow disc), the status is 0. A picture or
/// text that the program has copied is handed to the desktop's clipboard keeper first, where there is one.
[[noreturn]] void endProgram();

/// Ends the process only: flushed output, no destructors.
[[noreturn]] void endProcess(ExitStatus status);

}  // namespace cinedisc
