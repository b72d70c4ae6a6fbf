#include "control/pipeline/GreyTable.h"

#include "control/pipeline/ValueRange.h"

#include <algorithm>

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
}

}  // namespace cinedisc
