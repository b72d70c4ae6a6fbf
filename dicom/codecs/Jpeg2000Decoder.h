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
/// not. A picture whose samples, at four bytes each, take more than `mostSampleBytes` is decoded in bands,
/// which need less memory and more time.
Result<CodedPicture> decodeJpeg2000(std::span<const std::uint8_t> bytes, const PixelFormat& format,
                                    std::uint64_t mostSampleBytes = std::uint64_t{128} << 20);

}  // namespace cinedisc::dicom::codecs
