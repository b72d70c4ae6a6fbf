#pragma once

#include "dicom/PixelFormat.h"
#include "dicom/codecs/JpegMarkers.h"

#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

/// What keeps a stream of a cosine process (ITU-T T.81 sequential or progressive) from being handed to a
/// library: more scans than any picture is made of, each of which goes over all blocks even if it holds
/// nothing for them, or more memory than a decoder may take. `header` was read from `stream` and agrees with
/// `format`.
std::optional<DecodeError> jpegWorkError(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                         const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
