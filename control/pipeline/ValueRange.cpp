#include "control/pipeline/ValueRange.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace cinedisc {

namespace {

template <typename Sample>
bool counts(Sample value, const std::optional<std::pair<std::int64_t, std::int64_t>>& padding) {
    if constexpr (std::is_floating_point_v<Sample>) {
        if (!std::isfinite(value)) return false;
    }
    if (!padding) return true;
    const auto number = static_cast<double>(value);
    return number < static_cast<double>(padding->first) || number > static_cast<double>(padding->second);
}

}  // namespace

ValueRange frameRange(const dicom::Frame& frame,
                      const std::optional<std::pair<std::int64_t, std::int64_t>>& padding) {
    return std::visit(
        [&](const auto& samples) -> ValueRange {
            using Sample = std::decay_t<decltype(samples[0])>;
            Sample low = std::numeric_limits<Sample>::max();
            Sample high = std::numeric_limits<Sample>::lowest();
            for (const Sample value : samples) {
                if (!counts(value, padding)) continue;
                low = std::min(low, value);
                high = std::max(high, value);
            }
            if (low > high) return {};
            return {static_cast<double>(low), static_cast<double>(high)};
        },
        frame.samples);
}

ValueRange expressibleRange(const dicom::PixelFormat& format) {
    if (format.sampleKind != dicom::SampleKind::Integer) return {0, 1};
    const double count = std::ldexp(1.0, std::clamp(format.bitsStored, 1, 32));
    if (format.isSigned) return {-count / 2, count / 2 - 1};
    return {0, count - 1};
}

ValueRange modalityRange(const dicom::GreyTransform& grey, const ValueRange& stored) {
    if (grey.modalityLut && !grey.modalityLut->entries.empty()) {
        const auto& entries = grey.modalityLut->entries;
        const auto last = static_cast<double>(entries.size() - 1);
        const auto first = static_cast<double>(grey.modalityLut->firstMapped);
        const auto from = static_cast<std::ptrdiff_t>(std::clamp(stored.low - first, 0.0, last));
        const auto to = static_cast<std::ptrdiff_t>(std::clamp(stored.high - first, 0.0, last));
        const auto [low, high] = std::minmax_element(entries.begin() + from, entries.begin() + to + 1);
        return {static_cast<double>(*low), static_cast<double>(*high)};
    }
    const double a = modalityValue(grey, stored.low);
    const double b = modalityValue(grey, stored.high);
    return {std::min(a, b), std::max(a, b)};
}

double modalityValue(const dicom::GreyTransform& grey, double stored) {
    if (grey.modalityLut && !grey.modalityLut->entries.empty()) return lookUp(*grey.modalityLut, stored);
    if (grey.rescale) return stored * grey.rescale->slope + grey.rescale->intercept;
    return stored;
}

std::uint16_t lookUp(const dicom::LookupTable& table, double value) {
    if (table.entries.empty()) return 0;
    const double index = std::floor(value + 0.5) - static_cast<double>(table.firstMapped);
    if (!(index > 0)) return table.entries.front();
    if (index >= static_cast<double>(table.entries.size())) return table.entries.back();
    return table.entries[static_cast<std::size_t>(index)];
}

std::uint32_t fullScale(const dicom::LookupTable& table) {
    std::uint32_t highest = (1U << std::clamp(table.bits, 1, 16)) - 1;
    for (const std::uint16_t entry : table.entries) {
        while (entry > highest) highest = highest * 2 + 1;
    }
    return highest;
}

}  // namespace cinedisc
