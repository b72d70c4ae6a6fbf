#pragma once

#include "dicom/Result.h"

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

/// Finds and reads the frames of a file. Safe to call from several threads.
class FrameSource {
  public:
    virtual ~FrameSource() = default;

    /// Frames that can be asked for, as far as the file's length tells without reading on.
    virtual int count() const = 0;
    /// Reads a frame, counted from 0 and below count().
    virtual Result<FrameBytes> read(int frame) const = 0;
};

}  // namespace cinedisc::dicom
