#pragma once

#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/JpegMarkers.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

/// Decodes 12-bit JPEG, sequential (processes 2 and 4) and progressive (the retired ones), into `pixels`,
/// which has room for all samples. Colour stays as it is coded. `header` was read from `stream` and its sizes
/// agree with the file's header.
std::optional<DecodeError> decodeExtendedJpeg(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                              std::span<std::uint16_t> pixels);

}  // namespace cinedisc::dicom::codecs
