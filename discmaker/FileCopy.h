#pragma once

#include <filesystem>
#include <string>

namespace cinedisc::discmaker {

struct CopyOutcome {
    std::string digest;  ///< of the bytes; equal for equal files
    std::string fault;   ///< why the source gave no whole file, "" otherwise
};

/// Copies a file. A source that cannot be read or changes meanwhile is told as a fault, and nothing is left
/// at the target. A target that cannot be written raises DiscError.
CopyOutcome copyFile(const std::filesystem::path& source, const std::filesystem::path& target);
/// Reads a copy again; one that has not the digest of what was written raises DiscError.
void requireSame(const std::filesystem::path& copy, const std::string& digest);

/// Writes a small file; raises DiscError.
void writeText(const std::filesystem::path& path, const std::string& text);

}  // namespace cinedisc::discmaker
