#pragma once

#include <cstddef>
#include <cstdint>

namespace cinedisc::dicom {

enum class ByteOrder { Little, Big };

/// A whole number of `size` bytes (1 to 8) at `from`.
constexpr std::uint64_t loadNumber(const std::byte* from, int size, ByteOrder order = ByteOrder::Little) {
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | std::to_integer<std::uint64_t>(from[order == ByteOrder::Big ? i : size - 1 - i]);
    return value;
}

constexpr std::uint16_t load16(const std::byte* from, ByteOrder order = ByteOrder::Little) {
    return static_cast<std::uint16_t>(loadNumber(from, 2, order));
}

constexpr std::uint32_t load32(const std::byte* from, ByteOrder order = ByteOrder::Little) {
    return static_cast<std::uint32_t>(loadNumber(from, 4, order));
}

}  // namespace cinedisc::dicom
