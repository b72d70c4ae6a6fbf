#pragma once

#include "dicom/codecs/CodedPicture.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

/// Decodes JPEG 2000 and its high-throughput variant (ITU-T T.800, T.814). Whether the components were
/// transformed is taken from the stream; a YBR_FULL photometric interpretation counts only when they were
/// not. A picture whose samples, at four bytes each, take more than `mostSampleBytes` is decoded in bands,
/// which need less memory and more time.
Result<CodedPicture> decodeJpeg2000(std::span<const std::uint8_t> bytes, const PixelFormat& format,
                                    std::uint64_t mostSampleBytes = std::uint64_t{128} << 20);

/// Large pictures are waited for: all processors work on one. Of smaller ones, which come in runs, each is
/// decoded by one thread, and several may be at a time.
bool isLargeJpeg2000(const PixelFormat& format);

/// The lower levels of a picture's wavelet.
struct CoarsePicture {
    CodedPicture picture;
    int halvings = 1;  ///< of both sides
};

/// The format of a picture whose sides were halved a number of times.
PixelFormat halved(PixelFormat format, int times);

/// Decodes the wavelet's lower levels only: the smallest picture whose shorter side has `leastSide` pixels or
/// more, or a larger one if the stream has no more levels. Empty when it has none, or when the means of
/// neighbouring samples would mean nothing. What is damaged may show here or not.
std::optional<CoarsePicture> decodeCoarseJpeg2000(std::span<const std::uint8_t> bytes,
                                                  const PixelFormat& format, int leastSide);

}  // namespace cinedisc::dicom::codecs
