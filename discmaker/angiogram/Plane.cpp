#include "discmaker/angiogram/Plane.h"

#include <algorithm>

namespace cinedisc::discmaker {

void soften(Plane& plane) {
    const auto width = static_cast<std::size_t>(plane.width);
    std::vector<float> line(width + 4);
    for (int y = 0; y < plane.height; ++y) {
        float* row = plane.row(y);
        std::copy_n(row, width, line.begin() + 2);
        line[0] = line[1] = row[0];
        line[width + 2] = line[width + 3] = row[width - 1];
        for (std::size_t x = 0; x < width; ++x)
            row[x] = (line[x] + line[x + 4]) * 0.0625f + (line[x + 1] + line[x + 3]) * 0.25f +
                     line[x + 2] * 0.375f;
    }
    // Down the columns a few rows of the unsoftened picture are kept behind.
    std::vector<std::vector<float>> kept(5, std::vector<float>(width));
    const auto load = [&](int y) {
        auto& slot = kept[static_cast<std::size_t>((y + 5) % 5)];
        std::copy_n(plane.row(std::clamp(y, 0, plane.height - 1)), width, slot.begin());
    };
    for (int y = -2; y < 2; ++y) load(y);
    for (int y = 0; y < plane.height; ++y) {
        load(y + 2);
        const auto slot = [&](int offset) {
            return kept[static_cast<std::size_t>((y + offset + 5) % 5)].data();
        };
        const float *a = slot(-2), *b = slot(-1), *c = slot(0), *d = slot(1), *e = slot(2);
        float* row = plane.row(y);
        for (std::size_t x = 0; x < width; ++x)
            row[x] = (a[x] + e[x]) * 0.0625f + (b[x] + d[x]) * 0.25f + c[x] * 0.375f;
    }
}

void addEnlarged(Plane& plane, const Plane& small) {
    const float across = static_cast<float>(small.width) / static_cast<float>(plane.width);
    const float down = static_cast<float>(small.height) / static_cast<float>(plane.height);
    std::vector<float> line(static_cast<std::size_t>(small.width) + 1);
    for (int y = 0; y < plane.height; ++y) {
        const float place = std::clamp((static_cast<float>(y) + 0.5f) * down - 0.5f, 0.0f,
                                       static_cast<float>(small.height - 1));
        const int upper = std::min(static_cast<int>(place), std::max(small.height - 2, 0));
        const float part = place - static_cast<float>(upper);
        const float* a = small.row(upper);
        const float* b = small.row(std::min(upper + 1, small.height - 1));
        for (int x = 0; x < small.width; ++x) line[static_cast<std::size_t>(x)] = a[x] + (b[x] - a[x]) * part;
        line.back() = line[line.size() - 2];
        float* row = plane.row(y);
        for (int x = 0; x < plane.width; ++x) {
            const float from = std::clamp((static_cast<float>(x) + 0.5f) * across - 0.5f, 0.0f,
                                          static_cast<float>(small.width - 1));
            const auto left = static_cast<std::size_t>(from);
            row[x] += line[left] + (line[left + 1] - line[left]) * (from - static_cast<float>(left));
        }
    }
}

}  // namespace cinedisc::discmaker
