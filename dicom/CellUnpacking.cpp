#include "dicom/CellUnpacking.h"

#include "dicom/PixelDescription.h"

#include <algorithm>
#include <cstdint>

namespace cinedisc::dicom {

bool hasPackedCells(const PixelFormat& format) {
    const int bits = format.bitsAllocated;
    return bits != 1 && bits != 8 && bits != 16 && bits < 32;
}

PixelFormat spreadFormat(const PixelFormat& format) {
    PixelFormat spread = format;
    spread.bitsAllocated = format.bitsAllocated <= 8 ? 8 : format.bitsAllocated <= 16 ? 16 : 32;
    return spread;
}

std::vector<std::byte> spreadCells(std::span<const std::byte> packed, int firstBit,
                                   const PixelFormat& format) {
    const auto bits = static_cast<unsigned>(format.bitsAllocated);
    const auto cellBytes = static_cast<std::size_t>(spreadFormat(format).bitsAllocated / 8);
    const auto cells =
        static_cast<std::size_t>(std::min<std::uint64_t>(nativeFrameBits(format), packed.size() * 8) / bits);
    std::vector<std::byte> spread;
    spread.reserve(cells * cellBytes);
    std::uint64_t window = 0;
    unsigned available = 0;
    std::size_t at = 0;
    const auto refill = [&](unsigned wanted) {
        while (available < wanted) {
            const auto next = at < packed.size() ? std::to_integer<std::uint64_t>(packed[at]) : 0;
            window |= next << available;
            available += 8;
            ++at;
        }
    };
    refill(static_cast<unsigned>(firstBit));
    window >>= firstBit;
    available -= static_cast<unsigned>(firstBit);
    for (std::size_t i = 0; i < cells; ++i) {
        refill(bits);
        const std::uint64_t cell = window & ((std::uint64_t{1} << bits) - 1);
        for (std::size_t k = 0; k < cellBytes; ++k)
            spread.push_back(static_cast<std::byte>(cell >> (8 * k) & 0xFF));
        window >>= bits;
        available -= bits;
    }
    return spread;
}

}  // namespace cinedisc::dicom
