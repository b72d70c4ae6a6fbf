#pragma once

#include "dicom/ByteSource.h"

#include <algorithm>
#include <vector>

namespace cinedisc::dicom {

/// Bytes in memory: an inflated data set, or a file built by a test.
class MemoryByteSource : public ByteSource {
  public:
    explicit MemoryByteSource(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {}

    std::uint64_t size() const override { return bytes_.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        if (offset >= bytes_.size()) return 0;
        const std::size_t count = std::min<std::size_t>(into.size(), bytes_.size() - offset);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), count, into.begin());
        return count;
    }

  private:
    std::vector<std::byte> bytes_;
};

}  // namespace cinedisc::dicom
