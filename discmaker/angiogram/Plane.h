#pragma once

#include <cstddef>
#include <vector>

namespace cinedisc::discmaker {

/// A picture of floating-point values, row after row.
struct Plane {
    int width = 0;
    int height = 0;
    std::vector<float> values;

    Plane() = default;
    Plane(int w, int h)
        : width(w), height(h), values(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}

    float* row(int y) {
        return values.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
    const float* row(int y) const {
        return values.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
};

/// Bends values towards `depth`, which they never pass: close to depth * (1 - exp(-value / depth)).
inline void saturate(Plane& plane, float depth) {
    for (float& value : plane.values) {
        const float x = value / depth;
        value = depth - depth / (1 + x * (1 + x * (1.0f / 2 + x * (1.0f / 6 + x / 24))));
    }
}
/// Softens with the weights 1 4 6 4 1 across and down (a standard deviation of one pixel).
void soften(Plane& plane);
/// Adds `small`, enlarged to the plane's size with linear interpolation.
void addEnlarged(Plane& plane, const Plane& small);

}  // namespace cinedisc::discmaker
