#pragma once

#include "discmaker/DiscWriter.h"
#include "discmaker/FileCollector.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

/// What became of the files that were named.
struct DiscSummary {
    std::size_t patients = 0, files = 0;                        ///< on the disc
    std::size_t notDicom = 0, directories = 0, unreadable = 0;  ///< left out
};

/// Makes a disc from DICOM files: every one whose header can be read goes on it unchanged.
/// Raises DiscError, among others when there is no DICOM file, and then leaves `disc` as it was.
DiscSummary makeDisc(const std::filesystem::path& disc, const std::string& title,
                     const std::vector<std::filesystem::path>& named, const Enclosures& enclosures,
                     const Report& report);

}  // namespace cinedisc::discmaker
