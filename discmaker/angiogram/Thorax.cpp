#include "discmaker/angiogram/Thorax.h"

#include "discmaker/angiogram/Random.h"
#include "discmaker/angiogram/TubeRenderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

namespace cinedisc::discmaker {

namespace {

constexpr int lungMargin = 16;  // coarse rows above and below the picture

/// An ellipsoid of even tissue.
struct SoftBody {
    Vector3 center;
    std::array<Vector3, 3> axes;  ///< half axes, at right angles to each other, mm
    double density = 0;           ///< grey steps that a ray loses for each mm of its way
};

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

/// What the rays lose in the bodies together. The plane may be coarser than the projection's picture; it
/// covers the same field.
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

std::vector<SoftBody> organs(HeartMotion::Moment moment) {
    const double c = moment.contraction, breath = -moment.breath;
    const auto axis = HeartMotion::axis(), forward = HeartMotion::forward(), left = HeartMotion::leftward();
    const Vector3 heart = axis * (6 + 3 * c) + Vector3{0, 0, breath};
    const double across = 1 - 0.09 * c;
    const auto dome = [breath](double x, double z, double width) {
        return SoftBody{
            {x, 5, z + 1.6 * breath}, {Vector3{width, 0, 0}, Vector3{0, 88, 0}, Vector3{0, 0, 84}}, 0.72};
    };
    return {
        {heart, {axis * (62 - 4 * c), forward * (47 * across), left * (49 * across)}, 0.50},
        // Atria and roots of the great vessels.
        {axis * -40 + Vector3{-4, 6, 4 + breath},
         {Vector3{46, 0, 0}, Vector3{0, 40, 0}, Vector3{0, 0, 44}},
         0.28},
        {{-18, 8, 95}, {Vector3{30, 0, 0}, Vector3{0, 34, 0}, Vector3{0, 0, 62}}, 0.34},
        dome(62, -132, 84),
        dome(-66, -122, 88),
        // Descending aorta and the soft parts along the spine.
        {{14, 66, 0}, {Vector3{17, 0, 0}, Vector3{0, 17, 0}, Vector3{0, 0, 420}}, 0.22},
    };
}

}  // namespace

Thorax::Thorax(const Projection& projection, std::uint64_t seed)
    : projection_(projection), coarseSize_(128), bones_(projection.size(), projection.size()) {
    castBones();
    weaveLungs(seed);
}

void Thorax::castBones() {
    TubeRenderer renderer(projection_.size());
    const auto point = [this](Vector3 place, double radius, double density) {
        const auto cast = projection_.project(place);
        return TubePoint{static_cast<float>(cast.column), static_cast<float>(cast.row),
                         static_cast<float>(radius * cast.pixelsPerMm),
                         static_cast<float>(density / cast.pixelsPerMm)};
    };
    std::vector<TubePoint> spine;
    for (double z = -190; z <= 190; z += 1.0) {
        // Vertebrae of 26 mm with paler discs between dense end plates.
        const double part = std::abs(z / 26 - std::round(z / 26));
        const double disc = std::exp(-std::pow((part - 0.5) / 0.075, 2)),
                     plate = std::exp(-std::pow((part - 0.37) / 0.035, 2));
        spine.push_back(
            point({0, 88, z}, 17.5 - 2.2 * std::cos(part * 6.28), 1.0 - 0.32 * disc + 0.16 * plate));
    }
    renderer.add(bones_, spine);
    for (int level = -5; level <= 5; ++level) {
        for (double side : {-1.0, 1.0}) {
            std::vector<TubePoint> rib;
            for (double turn = 0.06; turn <= 2.5; turn += 0.02) {
                const Vector3 place{side * (132 * std::sin(turn)), 92 * std::cos(turn) + 4,
                                    level * 28.0 + 34 - (40 + 2.5 * level) * turn + side * 4};
                rib.push_back(point(place, 5.6 + 0.5 * std::sin(level * 2.1 + turn), 0.85 - 0.2 * turn));
            }
            renderer.add(bones_, rib, TubeRenderer::Filling::Hollow);
        }
    }
    for (int times = 0; times < projection_.size() / 170; ++times) soften(bones_);
}

void Thorax::weaveLungs(std::uint64_t seed) {
    Random random(seed ^ 0x10465);
    lungs_ = Plane(coarseSize_, coarseSize_ + 2 * lungMargin);
    for (int cells : {5, 10, 21, 43}) {
        Plane octave(cells, cells * 5 / 4);
        for (auto& value : octave.values)
            value = static_cast<float>(random.normal() * 13.0 / std::sqrt(cells));
        addEnlarged(lungs_, octave);
    }
    soften(lungs_);
}

void Thorax::addLungs(Plane& coarse, double breath) const {
    const double shift = lungMargin + std::clamp(-breath * 0.5, -lungMargin + 1.0, lungMargin - 2.0);
    const int whole = static_cast<int>(shift);
    const auto part = static_cast<float>(shift - whole);
    for (int y = 0; y < coarse.height; ++y) {
        const float *a = lungs_.row(y + whole), *b = lungs_.row(y + whole + 1);
        float* row = coarse.row(y);
        for (int x = 0; x < coarse.width; ++x) row[x] += a[x] + (b[x] - a[x]) * part;
    }
}

Plane Thorax::shadows(HeartMotion::Moment moment, const Plane& stain) const {
    Plane coarse = castShadows(organs(moment), projection_, coarseSize_);
    soften(coarse);
    addLungs(coarse, moment.breath);
    addEnlarged(coarse, stain);
    Plane result = bones_;
    addEnlarged(result, coarse);
    // Scattered radiation flattens what lies deep in the shadow.
    saturate(result, 150);
    return result;
}

}  // namespace cinedisc::discmaker
