#pragma once

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

}  // namespace cinedisc::discmaker
