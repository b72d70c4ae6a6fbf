#include "discmaker/angiogram/QuantumNoise.h"

#include "discmaker/angiogram/Random.h"

#include <algorithm>
#include <cmath>

namespace cinedisc::discmaker {

namespace {

constexpr int side = 1024;

/// Weights w 1 w along rows or columns (`step` 1 or the row length), wrapping around.
void smear(std::vector<float>& tile, int step, float weight) {
    std::vector<float> line(static_cast<std::size_t>(side));
    const int other = step == 1 ? side : 1;
    const float norm = 1 / std::sqrt(1 + 2 * weight * weight);
    for (int i = 0; i < side; ++i) {
        float* start = tile.data() + static_cast<std::ptrdiff_t>(i) * other;
        for (int k = 0; k < side; ++k)
            line[static_cast<std::size_t>(k)] = start[static_cast<std::ptrdiff_t>(k) * step];
        for (int k = 0; k < side; ++k) {
            const float before = line[static_cast<std::size_t>((k + side - 1) % side)];
            const float after = line[static_cast<std::size_t>((k + 1) % side)];
            start[static_cast<std::ptrdiff_t>(k) * step] =
                (line[static_cast<std::size_t>(k)] + weight * (before + after)) * norm;
        }
    }
}

/// Standard deviation 1, repeats in both directions. Made once, as it takes longer than a frame.
const std::vector<float>& grainTile() {
    static const std::vector<float> tile = [] {
        std::vector<float> values(std::size_t{side} * side);
        Random random(0x0153);
        for (auto& value : values) value = static_cast<float>(random.normal());
        for (int step : {1, side}) smear(values, step, 0.5f);
        return values;
    }();
    return tile;
}

}  // namespace

QuantumNoise::QuantumNoise(double strength) : strengths_(256) {
    for (std::size_t grey = 0; grey < strengths_.size(); ++grey)
        strengths_[grey] =
            static_cast<float>(strength * std::exp((150.0 - static_cast<double>(grey)) / 150.0));
}

void QuantumNoise::addTo(Plane& plane, std::uint64_t number) const {
    Random random(number);
    const auto offset = random.next();
    const int across = static_cast<int>(offset & (side - 1)),
              down = static_cast<int>(offset >> 20 & (side - 1));
    const auto& tile = grainTile();
    const float sign = (offset >> 40 & 1) != 0 ? 1.0f : -1.0f;
    for (int y = 0; y < plane.height; ++y) {
        const float* line = tile.data() + static_cast<std::ptrdiff_t>((y + down) & (side - 1)) * side;
        float* row = plane.row(y);
        for (int x = 0; x < plane.width; ++x) {
            const auto grey = static_cast<std::size_t>(std::clamp(row[x], 0.0f, 255.0f));
            row[x] += sign * line[(x + across) & (side - 1)] * strengths_[grey];
        }
    }
}

}  // namespace cinedisc::discmaker
