#pragma once

#include "dicom/DataSet.h"

#include <cstdint>

namespace cinedisc::dicom {

/// Where the picture's pixels stand in a file.
struct PixelElement {
    Tag tag;
    Vr valueRepresentation = vr("OW");
    std::uint64_t offset = 0;  ///< of the value, bytes
    std::uint64_t length = 0;  ///< as announced; when open, up to the end of the file
    bool isOpen = false;       ///< undefined length: fragments follow
};

}  // namespace cinedisc::dicom
