#pragma once

#include "discmaker/ImageRecord.h"

#include <filesystem>
#include <string>
#include <variant>

namespace cinedisc::discmaker {

/// A file that has no place on the disc, and why.
struct Skipped {
    enum class Reason {
        NotDicom,
        Directory,  ///< a DICOMDIR, which lists the files of another medium
        Unreadable,
    };
    Reason reason;
    std::string message;
};

/// What a file's header says, or why it is left out.
std::variant<ImageRecord, Skipped> readRecord(const std::filesystem::path& path);

}  // namespace cinedisc::discmaker
