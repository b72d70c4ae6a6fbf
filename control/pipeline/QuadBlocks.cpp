#include "control/pipeline/QuadBlocks.h"

#include <algorithm>

namespace cinedisc {

QuadBlocks::QuadBlocks(std::span<const std::int32_t> first, std::span<const std::uint16_t> weights,
                       int taps) {
    constexpr std::uint16_t largest = 0x7FFF;  // they are multiplied as signed numbers
    if (taps > 4 ||
        std::any_of(weights.begin(), weights.end(), [](std::uint16_t weight) { return weight > largest; }))
        return;
    blocks_.resize((first.size() + 15) / 16);
    for (std::size_t i = 0; i < first.size(); ++i) {
        Block& block = blocks_[i / 16];
        std::array<std::uint32_t, 4> four{};
        const auto own = weights.subspan(i * static_cast<std::size_t>(taps), static_cast<std::size_t>(taps));
        std::copy(own.begin(), own.end(), four.begin());
        block.from[i % 16] = first[i];
        block.even[i % 16] = four[0] | four[2] << 16;
        block.odd[i % 16] = four[1] | four[3] << 16;
    }
}

}  // namespace cinedisc
