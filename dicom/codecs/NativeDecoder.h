#pragma once

#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstddef>
#include <span>

namespace cinedisc::dicom::codecs {

/// Reads a frame that is not compressed (PS3.5 section 8.1.1, 8.2; PS3.3 C.7.6.3.1). `bytes` may be longer
/// than the frame.
///
/// Subsampled colour (two luminances, then both chrominances) that comes with three samples for every pixel
/// is read as full colour: headers keep the name when software expands the pixels.
Result<Frame> decodeNative(std::span<const std::byte> bytes, const PixelFormat& format, bool bigEndian,
                           int firstBit);

}  // namespace cinedisc::dicom::codecs
