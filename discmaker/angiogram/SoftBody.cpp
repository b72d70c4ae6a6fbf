#include "discmaker/angiogram/SoftBody.h"

#include <cmath>
#include <vector>

namespace cinedisc::discmaker {

namespace {

/// A body in coordinates in which it is the unit ball around the origin.
struct Ball {
    std::array<Vector3, 3> to;
    Vector3 source;
    double density;

    Ball(const SoftBody& body, Vector3 raySource) : to(body.axes), source(), density(body.density) {
        for (auto& axis : to) axis = axis * (1 / dot(axis, axis));
        source = map(raySource - body.center);
    }
    Vector3 map(Vector3 v) const { return {dot(to[0], v), dot(to[1], v), dot(to[2], v)}; }

    /// Way of a ray of direction `ray` (length 1) through the ball, mm.
    double wayThrough(Vector3 ray) const {
        const Vector3 direction = map(ray);
        const double a = dot(direction, direction), b = dot(direction, source), c = dot(source, source) - 1;
        const double inside = b * b - a * c;
        return inside > 0 ? 2 * std::sqrt(inside) / a : 0;
    }
};

}  // namespace

Plane castShadows(std::span<const SoftBody> bodies, const Projection& projection, int size) {
    Plane plane(size, size);
    const double step = static_cast<double>(projection.size()) / size;
    std::vector<Ball> balls;
    for (const auto& body : bodies) balls.emplace_back(body, projection.source());
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const auto ray = projection.ray((x + 0.5) * step, (y + 0.5) * step);
            double lost = 0;
            for (const auto& ball : balls) lost += ball.density * ball.wayThrough(ray);
            plane.row(y)[x] = static_cast<float>(lost);
        }
    }
    return plane;
}

}  // namespace cinedisc::discmaker
