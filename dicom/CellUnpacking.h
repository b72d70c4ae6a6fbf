#pragma once

#include "dicom/PixelFormat.h"

#include <cstddef>
#include <span>
#include <vector>

namespace cinedisc::dicom {

/// Whether native pixel cells of this format do not fill whole bytes and are no bits either, such as 12 bits
/// allocated.
bool hasPackedCells(const PixelFormat& format);

/// The same format with the cells spread to 8, 16 or 32 bits.
PixelFormat spreadFormat(const PixelFormat& format);

/// Spreads packed cells, the least significant bit first (PS3.5 section 8.1.1), little endian. Cells beyond
/// the end of the bytes are left out.
std::vector<std::byte> spreadCells(std::span<const std::byte> packed, int firstBit,
                                   const PixelFormat& format);

}  // namespace cinedisc::dicom
