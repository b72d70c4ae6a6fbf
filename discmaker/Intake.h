#pragma once

#include "discmaker/FileCollector.h"
#include "discmaker/ImageRecord.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <vector>

namespace cinedisc::discmaker {

/// Called as the work goes on with what is done and all that there is to do, by one thread at a time.
using Progress = std::function<void(std::size_t done, std::size_t all)>;

/// What became of the files that were named.
struct IntakeSummary {
    std::size_t notDicom = 0, directories = 0, documents = 0, duplicates = 0;  ///< left out, as they should
    std::size_t unshowable = 0;  ///< seem to be DICOM and cannot be read, or shown
    std::size_t damaged = 0;     ///< on the disc, but not all of their frames can be shown
};

struct Intake {
    struct Picture {
        ImageRecord record;
        std::filesystem::path copy, source;
    };
    std::vector<Picture> pictures;
    std::vector<std::filesystem::path> kept;  ///< copies of what cannot be shown, when that is asked for
    IntakeSummary summary;
};

/// Copies files into the folder `work` and decodes every frame of the copies, so that what is said about a
/// file is true of what comes on the disc. The same bytes are taken once. Everything that is not taken is
/// told by name and reason.
Intake takeIn(std::span<const SourceFile> files, const std::filesystem::path& work, bool keep,
              const Report& report, const Progress& progress);

}  // namespace cinedisc::discmaker
