#include "bench/Angiogram.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace cinedisc::bench {

std::vector<std::uint16_t> angiogram(int size, int bits, double noise) {
    std::mt19937 engine(20240229);
    std::normal_distribution<double> quantum(0, noise);
    const double top = (1 << bits) - 1;
    std::vector<std::uint16_t> picture;
    picture.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int row = 0; row < size; ++row) {
        for (int column = 0; column < size; ++column) {
            const double x = 2.0 * column / size - 1, y = 2.0 * row / size - 1;
            double grey = 0.55 + 0.2 * std::cos(2 * x) * std::sin(1.5 * y + 0.4);
            for (int vessel = 0; vessel < 6; ++vessel) {
                const double distance = std::abs(y - 0.3 * vessel + 0.8 - 0.2 * std::sin(3 * x + vessel));
                if (distance < 0.02) grey -= 0.25 * std::sqrt(1 - distance / 0.02);
            }
            double value = grey * top + quantum(engine);
            if (x * x + y * y > 1.1) value = 0;
            picture.push_back(static_cast<std::uint16_t>(std::clamp(value, 0.0, top)));
        }
    }
    return picture;
}

}  // namespace cinedisc::bench
