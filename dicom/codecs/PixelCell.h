#pragma once

#include "dicom/DecodeError.h"
#include "dicom/PixelFormat.h"

#include <cstdint>
#include <optional>

namespace cinedisc::dicom::codecs {

/// No frame takes more than this many bytes once decoded.
inline constexpr std::uint64_t maximumFrameBytes = std::uint64_t{256} << 20;
/// Nor does decoding it take more than this, the compressed bytes and the frame itself included: what else
/// the program needs finds room beside it in 512 MiB.
inline constexpr std::uint64_t maximumDecodingBytes = std::uint64_t{400} << 20;

/// Where the value lies in a pixel cell.
struct PixelCell {
    int allocated = 8;  ///< 8, 16 or 32: the header's, rounded up
    int stored = 8;     ///< 1 .. allocated
    int shift = 0;      ///< bits below the value

    bool whole() const { return stored == allocated; }
};

/// The cell that the header describes. Impossible bits stored or high bits are taken as the whole cell and
/// the lowest position: such headers are wrong about the bits more often than their pixels are.
PixelCell pixelCell(const PixelFormat& format);

/// What keeps a frame of this format from being decoded, whatever its bytes are.
std::optional<DecodeError> formatError(const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
