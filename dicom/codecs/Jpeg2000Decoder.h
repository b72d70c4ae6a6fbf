#pragma once

#include "dicom/codecs/CodedPicture.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace cinedisc::dicom::codecs {

/// Whether the bytes begin like a JPEG 2000 code stream, or like the file format around one.
bool isJpeg2000(std::span<const std::uint8_t> bytes);

/// Decodes JPEG 2000 and its high-throughput variant (ITU-T T.800, T.814). Whether the components were
/// transformed is taken from the stream; a YBR_FULL photometric interpretation counts only when they were
/// not.
Result<CodedPicture> decodeJpeg2000(std::span<const std::uint8_t> bytes, const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
