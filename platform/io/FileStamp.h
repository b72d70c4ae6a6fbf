#pragma once

#include <cstdint>
#include <string>

namespace cinedisc {

/// What tells that the file at a path is still the same one: its size and times. Reads nothing of the file
/// itself.
struct FileStamp {
    std::int64_t size = -1;    ///< bytes, -1 when there is no such file
    std::int64_t written = 0;  ///< nanoseconds
    std::int64_t changed = 0;  ///< nanoseconds; also changes when another file takes the place
    std::uint64_t number = 0;  ///< of the file in its file system

    /// `path` is in UTF-8.
    static FileStamp of(const std::string& path);
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

}  // namespace cinedisc
