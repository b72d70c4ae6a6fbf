#pragma once

#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/JpegMarkers.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace cinedisc::dicom::codecs {

/// Decodes 12-bit JPEG, sequential (processes 2 and 4) and progressive (the retired ones). `header` was read
/// from `stream` and its sizes agree with the file's header.
Result<CodedPicture> decodeExtendedJpeg(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                        const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
