#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::dicom {

/// Expands the segments of a palette table (PS3.3 C.7.9.2): discrete, linear and indirect ones. `wordSize` is
/// 1 or 2 bytes. Returns at most `most` entries, fewer when the segments break off.
std::vector<std::uint16_t> expandSegments(std::span<const std::byte> data, std::size_t wordSize,
                                          std::size_t most);

}  // namespace cinedisc::dicom
