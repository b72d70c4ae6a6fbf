#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::dicom::codecs {

/// Bits packed from the lowest bit of each byte up (PS3.5 section 8.1.1), one to a byte, starting at bit
/// `firstBit` (0 .. 7). `bytes` holds them all.
std::vector<std::uint8_t> unpackedBits(std::span<const std::byte> bytes, int firstBit, std::size_t count);

}  // namespace cinedisc::dicom::codecs
