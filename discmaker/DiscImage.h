#pragma once

#include <filesystem>
#include <string>

namespace cinedisc::discmaker {

/// Raises DiscError when `image` is there and no image of a disc, or the program that writes images is
/// missing.
void requireImageCanBeWritten(const std::filesystem::path& image);

/// Writes the folder `disc` as an ISO 9660 image with Joliet and Rock Ridge names, its files in the order in
/// which they are read: the catalogue, the programs, then run after run. `scratch` names a file for working.
/// The image gets its name when it is complete. Raises DiscError.
void writeDiscImage(const std::filesystem::path& disc, const std::filesystem::path& image,
                    const std::string& volumeName, const std::filesystem::path& scratch);

}  // namespace cinedisc::discmaker
