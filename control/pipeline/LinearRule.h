#pragma once

#include <cstdint>

namespace cinedisc {

/// A grey rule that is a straight line between black and white: a stored value times `slope` plus `offset`,
/// cut off to a whole number, kept within 0 ... 255, and inverted where `flip` is 255 instead of 0. In single
/// precision, the product rounded before the sum.
struct LinearRule {
    float slope = 1;
    float offset = 0;
    std::uint8_t flip = 0;
};

}  // namespace cinedisc
