#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace cinedisc::dicom {

/// Bytes that can be read at any offset: a file, or memory in tests. Reads may come from several threads.
class ByteSource {
  public:
    virtual ~ByteSource() = default;

    virtual std::uint64_t size() const = 0;
    /// Reads up to `into.size()` bytes from `offset`; returns how many came, fewer only at the end or on an
    /// error.
    virtual std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const = 0;
};

}  // namespace cinedisc::dicom
