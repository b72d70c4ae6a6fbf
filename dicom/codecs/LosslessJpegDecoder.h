#pragma once

#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/JpegMarkers.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace cinedisc::dicom::codecs {

/// Decodes the lossless Huffman process (ITU-T T.81 annex H, process 14): all predictors, 2 to 16 bits, point
/// transform, restart intervals, one or three components in one scan or a scan each. `header` was read from
/// `stream` and its sizes agree with `format`.
Result<CodedPicture> decodeLosslessJpeg(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                        const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
