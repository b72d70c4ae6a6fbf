#include "discmaker/angiogram/QuantumNoise.h"

#include "discmaker/angiogram/Random.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace cinedisc::discmaker {

namespace {

constexpr int side = 1024;

std::size_t placeIn(int row, int column) {
    return static_cast<std::size_t>(row & (side - 1)) * side + static_cast<std::size_t>(column & (side - 1));
}

/// Standard deviation 1, smeared by the weights 1/2 1 1/2 across and down, repeats in both directions. Made
/// once, as it takes longer than a frame.
const std::vector<float>& grainTile() {
    static const std::vector<float> tile = [] {
        std::vector<float> white(std::size_t{side} * side), smeared(white.size());
        Random random(0x0153);
        for (auto& value : white) value = static_cast<float>(random.normal());
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                float sum = 0;
                for (int i = -1; i <= 1; ++i)
                    for (int k = -1; k <= 1; ++k)
                        sum += white[placeIn(y + i, x + k)] / static_cast<float>((1 + i * i) * (1 + k * k));
                smeared[placeIn(y, x)] = sum / 1.5f;
            }
        }
        return smeared;
    }();
    return tile;
}

}  // namespace

void addQuantumNoise(Plane& plane, double strength, std::uint64_t number) {
    std::array<float, 256> strengths;
    for (std::size_t grey = 0; grey < strengths.size(); ++grey)
        strengths[grey] = static_cast<float>(strength * std::exp(1 - static_cast<double>(grey) / 150));
    const auto offset = Random(number).next();
    const int across = static_cast<int>(offset & (side - 1)),
              down = static_cast<int>(offset >> 20 & (side - 1));
    const auto& tile = grainTile();
    const float sign = (offset >> 40 & 1) != 0 ? 1.0f : -1.0f;
    for (int y = 0; y < plane.height; ++y) {
        float* row = plane.row(y);
        for (int x = 0; x < plane.width; ++x) {
            const auto grey = static_cast<std::size_t>(std::clamp(row[x], 0.0f, 255.0f));
            row[x] += sign * tile[placeIn(y + down, x + across)] * strengths[grey];
        }
    }
}

}  // namespace cinedisc::discmaker
