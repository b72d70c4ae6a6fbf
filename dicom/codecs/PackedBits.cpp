#include "dicom/codecs/PackedBits.h"

namespace cinedisc::dicom::codecs {

std::vector<std::uint8_t> unpackedBits(std::span<const std::byte> bytes, int firstBit, std::size_t count) {
    std::vector<std::uint8_t> bits(count);
    const auto first = static_cast<std::size_t>(firstBit);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = first + i;
        bits[i] = static_cast<std::uint8_t>(std::to_integer<unsigned>(bytes[at >> 3]) >> (at & 7) & 1u);
    }
    return bits;
}

}  // namespace cinedisc::dicom::codecs
