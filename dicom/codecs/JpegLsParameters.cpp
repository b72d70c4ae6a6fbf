#include "dicom/codecs/JpegLsParameters.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace cinedisc::dicom::codecs {
namespace {

/// ITU-T T.87 figure C.3.
std::array<int, 3> defaultThresholds(int largest, int near) {
    constexpr std::array<int, 3> basic{3, 7, 21};
    std::array<int, 3> result{};
    int lowest = near + 1;
    for (int i = 0; i < 3; ++i) {
        const int base = basic[static_cast<std::size_t>(i)], margin = (2 * i + 3) * near;
        const int wanted = largest >= 128
                               ? (std::min(largest, 4095) + 128) / 256 * (base - (i + 2)) + i + 2 + margin
                               : std::max(i + 2, base / (256 / (largest + 1)) + margin);
        lowest = wanted > largest || wanted < lowest ? lowest : wanted;
        result[static_cast<std::size_t>(i)] = lowest;
    }
    return result;
}

int bitsFor(int count) { return std::bit_width(static_cast<unsigned>(count - 1)); }

}  // namespace

std::optional<JpegLsPreset> JpegLsPreset::read(std::span<const std::uint8_t> payload,
                                               const JpegLsPreset& before) {
    if (payload.empty()) return std::nullopt;
    if (payload[0] != 1) return before;
    if (payload.size() < 11) return std::nullopt;
    const auto number = [&](std::size_t i) { return payload[1 + 2 * i] << 8 | payload[2 + 2 * i]; };
    return JpegLsPreset{number(0), {number(1), number(2), number(3)}, number(4)};
}

std::optional<JpegLsParameters> JpegLsParameters::make(int bits, int near, const JpegLsPreset& preset) {
    JpegLsParameters p;
    const int full = (1 << bits) - 1;
    p.near = near;
    p.largest = preset.largest ? preset.largest : full;
    if (p.largest > full || near < 0 || near > std::min(255, p.largest / 2)) return std::nullopt;
    p.thresholds = defaultThresholds(p.largest, near);
    int lowest = near + 1;
    for (std::size_t i = 0; i < 3; ++i) {
        if (preset.thresholds[i]) p.thresholds[i] = preset.thresholds[i];
        if (p.thresholds[i] < lowest || p.thresholds[i] > std::max(p.largest, lowest)) return std::nullopt;
        lowest = p.thresholds[i];
    }
    if (preset.reset) p.reset = preset.reset;
    if (p.reset < 3 || p.reset > std::max(255, p.largest)) return std::nullopt;

    p.step = 2 * near + 1;
    p.range = (p.largest + 2 * near) / p.step + 1;
    p.errorBits = bitsFor(p.range);
    const int sampleBits = std::max(2, bitsFor(p.largest + 1));
    p.limit = 2 * (sampleBits + std::max(8, sampleBits));
    return p;
}

}  // namespace cinedisc::dicom::codecs
