#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::test {

/// An RLE frame (PS3.5 annex G) of byte planes, one segment each; rows of `columns` bytes are encoded apart.
std::vector<std::uint8_t> rleEncoded(std::span<const std::vector<std::uint8_t>> planes, int columns);

/// The byte planes of interleaved samples in the order of segments: for each sample its bytes, the highest
/// first.
std::vector<std::vector<std::uint8_t>> bytePlanes(std::span<const std::uint32_t> samples, int samplesPerPixel,
                                                  int bytesInSample);

}  // namespace cinedisc::test
