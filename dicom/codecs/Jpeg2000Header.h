#pragma once

#include "dicom/PixelFormat.h"
#include "dicom/Result.h"
#include "dicom/codecs/Jpeg2000Coding.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace cinedisc::dicom::codecs {

/// Whether the bytes begin like a JPEG 2000 code stream, or like the file format around one.
bool isJpeg2000(std::span<const std::uint8_t> bytes);

/// What must be known of a JPEG 2000 code stream before a library may allocate for it (ITU-T T.800 A.5.1).
struct Jpeg2000Header {
    int components = 1;
    Jpeg2000Grid grid;
    std::uint64_t overhead = 0;            ///< bytes of a library's book-keeping
    std::span<const std::uint8_t> stream;  ///< the code stream itself, without boxes around it
};

/// Reads the size marker, inside the file format's boxes if there are any, and checks it against the file's
/// header, and what the stream announces against its length.
Result<Jpeg2000Header> readJpeg2000Header(std::span<const std::uint8_t> bytes, const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
