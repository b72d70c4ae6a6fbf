#include "control/pipeline/PairBlocks.h"

namespace cinedisc {

PairBlocks::PairBlocks(std::span<const std::int32_t> first, std::span<const std::uint16_t> weights)
    : blocks_((first.size() + 15) / 16) {
    for (std::size_t i = 0; i < first.size(); ++i) {
        Block& block = blocks_[i / 16];
        const std::size_t within = i % 16, half = within / 8;
        if (within % 8 == 0) block.from[half] = first[i];
        const int position = first[i] - block.from[half];
        int left = weights[2 * i] / 128, right = weights[2 * i + 1] / 128;
        int leftAt = position, rightAt = position + 1;
        // 256 does not fit a byte: a whole weight is two halves of the same position.
        if (right == 0) rightAt = leftAt;
        if (left == 0) leftAt = rightAt;
        if (leftAt == rightAt) left = right = 128;
        block.order[2 * within] = static_cast<std::uint8_t>(leftAt);
        block.order[2 * within + 1] = static_cast<std::uint8_t>(rightAt);
        block.weights[2 * within] = static_cast<std::uint8_t>(left);
        block.weights[2 * within + 1] = static_cast<std::uint8_t>(right);
    }
}

}  // namespace cinedisc
