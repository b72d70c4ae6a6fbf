#pragma once

#include "dicom/MemoryByteSource.h"
#include "tests/support/DicomBuilder.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace cinedisc::test {

/// Bytes in memory that record what was read of them; beyond a place they may be unreadable.
class CountingSource : public dicom::ByteSource {
  public:
    explicit CountingSource(Bytes bytes, std::uint64_t readable = UINT64_MAX)
        : memory_(std::move(bytes)), readable_(readable) {}

    std::uint64_t size() const override { return memory_.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        const std::uint64_t room = readable_ - std::min(readable_, offset);
        into = into.first(static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), room)));
        const std::size_t got = memory_.readAt(offset, into);
        reads_.emplace_back(offset, got);
        return got;
    }

    std::size_t reads() const { return reads_.size(); }
    std::uint64_t bytes() const {
        std::uint64_t sum = 0;
        for (const auto& [offset, count] : reads_) sum += count;
        return sum;
    }
    /// Whether each read began at or behind the end of the one before.
    bool wentForwardOnly() const {
        std::uint64_t end = 0;
        for (const auto& [offset, count] : reads_) {
            if (offset < end) return false;
            end = offset + count;
        }
        return true;
    }
    void forget() { reads_.clear(); }

  private:
    dicom::MemoryByteSource memory_;
    std::uint64_t readable_;
    mutable std::vector<std::pair<std::uint64_t, std::size_t>> reads_;
};

}  // namespace cinedisc::test
