#pragma once

#include "discmaker/DiscWriter.h"
#include "discmaker/Intake.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

/// The disc that is asked for.
struct DiscRequest {
    std::filesystem::path disc;  ///< the folder
    std::string title;
    std::vector<std::filesystem::path> named;  ///< files and folders
    Enclosures enclosures;
    bool keep = false;       ///< puts aside what cannot be shown, in place of leaving it out
    bool anonymise = false;  ///< removes who the patients are
    std::optional<std::filesystem::path> image;  ///< an ISO 9660 image to be written too
    /// Bytes that a disc holds. What does not fit becomes several discs in the folders Disc1, Disc2 ...
    std::optional<std::uint64_t> size;
};

struct DiscSummary {
    std::size_t patients = 0, files = 0;  ///< on the disc, in its catalogue
    std::size_t discs = 1;
    std::size_t missing = 0;  ///< files that a DICOMDIR lists, folders and files that cannot be reached
    IntakeSummary intake;
};

/// Makes a disc from DICOM files: every one that can be shown goes on it.
/// Raises DiscError, among others when there is none, and then leaves `disc` as it was.
DiscSummary makeDisc(const DiscRequest& request, const Report& report, const Progress& progress);

}  // namespace cinedisc::discmaker
