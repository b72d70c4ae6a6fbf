#pragma once

#include "dicom/DicomFile.h"
#include "discmaker/ImageRecord.h"

#include <filesystem>
#include <memory>
#include <string>
#include <variant>

namespace cinedisc::discmaker {

/// A file that is no DICOM file with data of a patient, and why.
struct Skipped {
    enum class Reason {
        NotDicom,
        Directory,  ///< a DICOMDIR, which lists the files of a medium
        Unreadable,
    };
    Reason reason;
    std::string message;
};

/// Opens a file and tells what it is by its header.
std::variant<std::shared_ptr<const dicom::DicomFile>, Skipped> openSource(const std::filesystem::path& path);

/// What the header says.
ImageRecord recordOf(const dicom::DicomFile& file);

/// What is wrong with the pictures of a file.
struct PictureCheck {
    int shown = 0;         ///< frames that can be shown
    bool isPlain = false;  ///< an object that has no picture by right, such as a report
    std::string fault;     ///< "" when all frames can be shown
};
/// Decodes every frame, one after another.
PictureCheck checkPictures(const dicom::DicomFile& file);

}  // namespace cinedisc::discmaker
