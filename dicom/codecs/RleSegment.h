#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace cinedisc::dicom::codecs {

/// Expands one segment of an RLE frame (PS3.5 section G.3.1), a portion at a time.
class RleSegment {
  public:
    RleSegment() = default;
    explicit RleSegment(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    /// Fills `out` with the next bytes; false when the segment ends before.
    bool expand(std::span<std::uint8_t> out);
    /// Bytes of the segment that were not looked at yet.
    std::span<const std::uint8_t> rest() const { return bytes_; }
    /// How many bytes the last run has left.
    std::size_t unexpanded() const { return left_; }

  private:
    void expandWithRoom(std::span<std::uint8_t>& out);

    std::span<const std::uint8_t> bytes_;
    std::size_t left_ = 0;  ///< of the current run
    bool literal_ = false;  ///< the run's bytes stand in the segment one by one
};

}  // namespace cinedisc::dicom::codecs
