#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace cinedisc::discmaker {

/// Of a file's bytes: equal for equal files, and hardly ever for others. Good for one run of the program
/// only.
using Digest = std::size_t;

struct CopyOutcome {
    Digest digest = 0;
    std::string fault;  ///< why the source gave no whole file, "" otherwise
};

/// Copies a file. A source that cannot be read or changes meanwhile is told as a fault, and nothing is left
/// at the target. A target that cannot be written raises DiscError.
CopyOutcome copyFile(const std::filesystem::path& source, const std::filesystem::path& target);
/// Reads a copy again; one that has not the digest of what was written raises DiscError.
void requireSame(const std::filesystem::path& copy, Digest digest);
bool haveSameBytes(const std::filesystem::path& one, const std::filesystem::path& other);

/// Writes a small file; raises DiscError.
void writeText(const std::filesystem::path& path, const std::string& text);

}  // namespace cinedisc::discmaker
