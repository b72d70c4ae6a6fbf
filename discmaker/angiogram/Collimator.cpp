#include "discmaker/angiogram/Collimator.h"

#include <algorithm>
#include <cmath>

namespace cinedisc::discmaker {

Collimator::Collimator(Shape shape, Margins margins, int size) {
    const auto covered = [size](double part) { return static_cast<int>(std::lround(part * size)); };
    const int across = covered(margins.across),
              down = covered(shape == Shape::Circular ? margins.across : margins.down);
    opening_ = {shape, across + 1, size - across, down + 1, size - down};
}

void Collimator::cover(Plane& plane) const {
    const float soft = 0.4f;  // part that is let through per pixel from the edge
    for (int y = 0; y < plane.height; ++y) {
        float* row = plane.row(y);
        const int line = y + 1;
        const float fromEdge = static_cast<float>(std::min(line - opening_.upper, opening_.lower - line));
        for (int x = 0; x < plane.width; ++x) {
            const int column = x + 1;
            float depth = std::min(
                fromEdge, static_cast<float>(std::min(column - opening_.left, opening_.right - column)));
            if (opening_.shape == Shape::Circular) {
                const auto dx = static_cast<float>(column - centerColumn()),
                           dy = static_cast<float>(line - centerRow());
                depth = static_cast<float>(radius()) - std::sqrt(dx * dx + dy * dy);
            }
            row[x] *= std::clamp((depth + 0.5f) * soft, 0.0f, 1.0f);
        }
    }
}

}  // namespace cinedisc::discmaker
