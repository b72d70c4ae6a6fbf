#pragma once

#include <algorithm>
#include <cmath>

namespace cinedisc::discmaker {

/// A place or direction in the patient, mm: x to the patient's left, y to the back, z to the head.
struct Vector3 {
    double x = 0, y = 0, z = 0;

    friend constexpr Vector3 operator+(Vector3 a, Vector3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend constexpr Vector3 operator-(Vector3 a, Vector3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend constexpr Vector3 operator*(Vector3 a, double factor) {
        return {a.x * factor, a.y * factor, a.z * factor};
    }
};

constexpr double dot(Vector3 a, Vector3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
constexpr Vector3 cross(Vector3 a, Vector3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(Vector3 a) { return std::sqrt(dot(a, a)); }
inline Vector3 normalized(Vector3 a) { return a * (1 / length(a)); }

/// 0 up to `low`, 1 from `high` on, smooth between.
inline double smoothStep(double low, double high, double value) {
    const double t = std::clamp((value - low) / (high - low), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}
/// A point between `b` (t = 0) and `c` (t = 1) on the smooth curve through a, b, c and d.
template <typename Point>
Point spline(Point a, Point b, Point c, Point d, double t) {
    return b + ((c - a) + ((a * 2 - b * 5 + c * 4 - d) + ((b - c) * 3 + d - a) * t) * t) * (0.5 * t);
}

}  // namespace cinedisc::discmaker
