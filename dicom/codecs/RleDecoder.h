#pragma once

#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstddef>
#include <span>

namespace cinedisc::dicom::codecs {

/// Of the header of an RLE frame: the number of segments and their offsets, which are 32 bits each.
inline constexpr std::size_t rleHeaderSize = 64, rleMostSegments = 15;

/// Reads one RLE frame (PS3.5 annex G): a segment for each byte of each sample, the highest byte first.
/// Single bits are packed as in native frames, and a frame begins with a whole byte.
Result<Frame> decodeRle(std::span<const std::byte> bytes, const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
