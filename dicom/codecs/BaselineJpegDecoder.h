#pragma once

#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/JpegMarkers.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

/// What the components of a JPEG stream mean. An Adobe marker or a JFIF marker in the stream tells; without
/// them the component names and, for 1, 2, 3 without subsampling, the photometric interpretation.
ColourSpace jpegColourSpace(const JpegHeader& header, Photometric photometric);

/// Decodes 8-bit JPEG, sequential and progressive, into `pixels`, which has room for all samples. Colour
/// comes out as red, green and blue. `header` was read from `stream` and its sizes agree with the file's
/// header.
std::optional<DecodeError> decodeBaselineJpeg(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                              const PixelFormat& format, std::span<std::uint8_t> pixels);

}  // namespace cinedisc::dicom::codecs
