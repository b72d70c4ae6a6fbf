#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

/// Tells the person at the command line about something that does not stop the work.
using Report = std::function<void(const std::string&)>;

struct SourceFile {
    std::filesystem::path path;
    std::optional<std::size_t> place;  ///< in the order of the DICOMDIRs, of a file that one lists
};
struct Collected {
    std::vector<SourceFile> files;
    std::size_t missing = 0;  ///< files that a DICOMDIR lists and that are not there, and what cannot be read
};

/// All regular files that are named, lie below named folders or are listed by a DICOMDIR among them, each
/// once, in natural order of their paths below what was named. Links to folders are not followed. Named
/// things that do not exist, or lie inside `disc`, raise DiscError; `disc` itself is passed over; what cannot
/// be read and files that are missing are told to `report`. `scratch` names a file for working.
Collected collectFiles(std::span<const std::filesystem::path> named, const std::filesystem::path& disc,
                       const std::filesystem::path& scratch, const Report& report);

}  // namespace cinedisc::discmaker
