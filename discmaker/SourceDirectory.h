#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

/// What a DICOMDIR lists (PS3.3 annex F), in the order of its records.
struct DirectoryListing {
    std::vector<std::filesystem::path> files;
    std::vector<std::string> missing;  ///< names of files that are not there
    bool isWhole = false;
};

/// Reads a DICOMDIR; a broken one lists nothing, or what was read before it broke. `scratch` is where it is
/// copied to meanwhile: nothing that is written could reach the medium.
DirectoryListing readDirectory(const std::filesystem::path& path, const std::filesystem::path& scratch);

}  // namespace cinedisc::discmaker
