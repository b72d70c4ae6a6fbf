#pragma once

#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/JpegMarkers.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace cinedisc::dicom::codecs {

/// Decodes JPEG-LS (ITU-T T.87), lossless and near-lossless, 2 to 16 bits, one or three components however
/// interleaved. `header` was read from `stream` and its sizes agree with `format`.
Result<CodedPicture> decodeJpegLs(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                  const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
