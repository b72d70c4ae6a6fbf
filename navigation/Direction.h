#pragma once

namespace cinedisc {

enum class Direction { Next, Previous };

/// The position after `index` of `count` in a direction, wrapping at both ends.
constexpr int wrappedStep(int index, int count, Direction direction) {
    if (direction == Direction::Next) return index >= count - 1 ? 0 : index + 1;
    return index >= 1 ? index - 1 : count - 1;
}

}  // namespace cinedisc
