#pragma once

#include <cstddef>
#include <functional>

namespace cinedisc::discmaker {

/// Processors of this machine, at least 1.
unsigned processorCount();

/// Calls `work` with 0 .. count - 1 from up to `workers` threads and returns when all is done. The first
/// exception ends the rest early and is raised again here.
void parallelFor(std::size_t count, unsigned workers, const std::function<void(std::size_t)>& work);

}  // namespace cinedisc::discmaker
