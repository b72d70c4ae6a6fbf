#include "control/pipeline/GreyTable.h"

#include "control/pipeline/RowKernels.h"
#include "control/pipeline/ValueRange.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace cinedisc {

GreyTable::GreyTable(const GreyRule& rule, const dicom::PixelFormat& format, bool wideSamples)
    : entries_(wideSamples ? 65536 : 256) {
    const auto mask = static_cast<std::uint32_t>(entries_.size() - 1);
    const ValueRange values = expressibleRange(format);
    const int half = static_cast<int>(entries_.size() / 2);
    const int lowest = format.isSigned ? -half : 0;
    const int highest = lowest + static_cast<int>(mask);
    const int from = static_cast<int>(std::max<double>(values.low, lowest));
    const int to = static_cast<int>(std::min<double>(values.high, highest));
    for (int value = from; value <= to; ++value) {
        entries_[static_cast<std::uint32_t>(value) & mask] = rule(value);
    }
    // Values beyond the stored bits do not occur in a decoded frame; they show as the nearest that does.
    const std::uint8_t below = rule(from), above = rule(to);
    for (int value = lowest; value < from; ++value)
        entries_[static_cast<std::uint32_t>(value) & mask] = below;
    for (int value = to + 1; value <= highest; ++value)
        entries_[static_cast<std::uint32_t>(value) & mask] = above;
    linear_ = lineThrough(rule, from, to);
}

std::optional<LinearRule> GreyTable::lineThrough(const GreyRule& rule, int from, int to) const {
    const auto exact = rule.line();
    if (!exact) return std::nullopt;
    constexpr double most = 1 << 30;  // of a product, to be a whole number of 32 bits
    const double reach = static_cast<double>(entries_.size());
    if (!(std::abs(exact->slope) * reach + std::abs(exact->offset) < most)) return std::nullopt;
    // Where a level lies exactly between two greys, single precision may fall to the wrong side of it.
    for (const double nudge : {0.0, 1e-5, -1e-5, 5e-5, -5e-5}) {
        const LinearRule line{static_cast<float>(exact->slope),
                              static_cast<float>(exact->offset + 0.5 + nudge),
                              static_cast<std::uint8_t>(exact->inverse ? 255 : 0)};
        if (isLine(line, from, to)) return line;
    }
    return std::nullopt;
}

bool GreyTable::isLine(const LinearRule& line, int from, int to) const {
    const auto agrees = [&]<typename Sample>(Sample) {
        std::vector<Sample> values(static_cast<std::size_t>(to - from) + 1);
        std::iota(values.begin(), values.end(), static_cast<Sample>(from));
        std::vector<std::uint8_t> greys(values.size());
        RowKernels::best().linear(values.data(), line, greys.data(), static_cast<int>(greys.size()));
        for (std::size_t i = 0; i < greys.size(); ++i) {
            const auto index = static_cast<std::size_t>(values[i]) & (entries_.size() - 1);
            if (greys[i] != entries_[index]) return false;
        }
        return true;
    };
    if (entries_.size() == 256) return from < 0 ? agrees(std::int8_t{}) : agrees(std::uint8_t{});
    return from < 0 ? agrees(std::int16_t{}) : agrees(std::uint16_t{});
}

}  // namespace cinedisc
