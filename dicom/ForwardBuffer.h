#pragma once

#include "dicom/ByteSource.h"

#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::dicom {

/// Reads a source from its start to wherever its header ends, never backwards, in few reads.
///
/// The first read takes 4 KiB, which holds most headers. What lies behind a header is its first frame, so
/// further reads may be larger as long as they stay within that frame: its size is told by expectFrameBytes
/// once the header has given it, and guessed small from the file's size before. Together with the frame
/// itself that makes at most three reads for usual headers, and at most 4 KiB more than header and frame.
/// Bytes read too far are handed on by takeRest.
class ForwardBuffer {
  public:
    explicit ForwardBuffer(const ByteSource& source) : source_(source), size_(source.size()) {}

    std::uint64_t position() const { return position_; }
    std::uint64_t size() const { return size_; }
    /// Whether the source gave less than its size promised: a disc that cannot be read further.
    bool hasFailed() const { return size_ < source_.size(); }
    std::uint64_t remaining() const { return size_ - position_; }

    /// The next `count` bytes, fewer only where the source ends. Valid until the next call of peek.
    std::span<const std::byte> peek(std::size_t count);
    /// Goes on by `count` bytes, at most to the end. What is skipped and not yet read is never read.
    void advance(std::uint64_t count);

    /// How many bytes of frame follow the header, as far as the header read so far tells.
    void expectFrameBytes(std::uint64_t bytes) { frameBytes_ = bytes; }

    /// What was read beyond the position.
    std::vector<std::byte> takeRest();

  private:
    std::uint64_t nextReadSize() const;
    std::size_t available() const;

    const ByteSource& source_;
    std::uint64_t size_;
    std::uint64_t position_ = 0;
    std::uint64_t blockOffset_ = 0;
    std::uint64_t bytesRead_ = 0;
    std::uint64_t frameBytes_ = 0;
    std::vector<std::byte> block_;
};

}  // namespace cinedisc::dicom
