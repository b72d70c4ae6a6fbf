#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace cinedisc::dicom {

/// The bytes of one frame as they stand in the file: native pixels, or a code stream with its fragments
/// joined.
struct FrameBytes {
    std::vector<std::byte> storage;
    std::size_t begin = 0;
    std::size_t length = 0;
    int firstBit = 0;  ///< of the frame, in its first byte

    std::span<const std::byte> bytes() const { return std::span(storage).subspan(begin, length); }
};

}  // namespace cinedisc::dicom
