#pragma once

#include <cstdint>
#include <string>

namespace cinedisc::bench {

/// Called after every read of a file, in the thread that reads, before the reader gets its bytes. Each
/// program that watches its reads defines it.
void onRead(const std::string& path, std::uint64_t offset, std::uint64_t length);

}  // namespace cinedisc::bench
