#include "discmaker/angiogram/Angiogram.h"

#include "discmaker/angiogram/QuantumNoise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cinedisc::discmaker {

namespace {

constexpr double iodine = 19;         // grey steps a mm of undiluted contrast medium takes
constexpr double catheterWall = 9.0;  // the same for the catheter's plastic
constexpr double middleGrey = 158;    // mean of the open part before the injection

Projection aimed(const Angiogram::Setup& setup, const VesselTree& tree) {
    Projection projection(setup.view, setup.size, setup.fieldOfView);
    const HeartMotion::Moment middle{0.4, 0};
    double left = 1e9, right = -1e9, top = 1e9, bottom = -1e9;
    for (const auto& vessel : tree) {
        for (const auto& sample : vessel.samples) {
            const auto point = projection.project(HeartMotion::position(sample.place, middle));
            left = std::min(left, point.column), right = std::max(right, point.column);
            top = std::min(top, point.row), bottom = std::max(bottom, point.row);
        }
    }
    // The tree's middle comes to the picture's middle, a little low so that the catheter is seen.
    const auto origin = projection.project({});
    projection.aimAt({}, 0.5 + (origin.column - (left + right) / 2) / setup.size,
                     0.52 + (origin.row - (top + bottom) / 2) / setup.size);
    return projection;
}

VesselTree treeOf(const Angiogram::Setup& setup) {
    return setup.side == Catheter::Side::Left ? leftCoronary(setup.anatomy) : rightCoronary(setup.anatomy);
}

TubePoint tubePoint(const Projection::Point& point, double radius, double density) {
    return {static_cast<float>(point.column), static_cast<float>(point.row),
            static_cast<float>(radius * point.pixelsPerMm), static_cast<float>(density / point.pixelsPerMm)};
}

}  // namespace

Angiogram::Angiogram(const Setup& setup)
    : setup_(setup),
      tree_(treeOf(setup)),
      projection_(aimed(setup, tree_)),
      flow_(setup.injection),
      catheter_(setup.side, setup.access),
      collimator_(setup.shutter, setup.margins, setup.size),
      thorax_(projection_, setup.anatomy.seed),
      tubes_(setup.size),
      muscle_(),
      brightness_(0) {
    stainMuscle();
    brightness_ = brightness();
}

HeartMotion::Moment Angiogram::momentAt(double time) const {
    const double start = static_cast<double>(setup_.seed % 7) / 7;
    const double breath = std::sin((time * 0.22 + start) * 2 * std::numbers::pi);
    return {HeartMotion::contraction(time * setup_.heartRate / 60 + 0.55 + start), 2.2 * breath};
}

std::vector<TubePoint> Angiogram::cast(const Vessel& vessel, double time, HeartMotion::Moment moment) const {
    std::vector<TubePoint> tube;
    tube.reserve(vessel.samples.size());
    const double beat = 60 / setup_.heartRate;
    const double start = vessel.samples.front().distance;
    Vector3 before;
    for (std::size_t i = 0; i < vessel.samples.size(); ++i) {
        if (i % 2 == 1 && i + 1 < vessel.samples.size()) continue;  // pieces of two mm are straight enough
        const auto& sample = vessel.samples[i];
        const auto place = HeartMotion::position(sample.place, moment);
        double density = iodine * flow_.concentration(sample.distance, time, beat);
        // A branch is inside the vessel that it leaves for the first part of its way.
        density *= smoothStep(0.4 * vessel.originRadius, 1.5 * vessel.originRadius, sample.distance - start);
        // Rays along a vessel are longer inside it.
        if (i > 0) {
            const Vector3 course = place - before;
            const double along = dot(course, projection_.beam()) / std::max(length(course), 1e-6);
            density /= std::max(std::sqrt(1 - along * along), 0.6);
        }
        before = place;
        tube.push_back(tubePoint(projection_.project(place), sample.radius, density));
    }
    return tube;
}

void Angiogram::castVessels(Plane& shadow, double time, HeartMotion::Moment moment) {
    for (const auto& vessel : tree_) tubes_.add(shadow, cast(vessel, time, moment));
}

void Angiogram::castCatheter(Plane& shadow, double time, HeartMotion::Moment moment) {
    std::vector<TubePoint> wall, bore;
    const double filled = iodine * 0.9 * flow_.inCatheter(time);
    for (const auto& place : catheter_.course(tree_.front(), moment)) {
        const auto point = projection_.project(place);
        wall.push_back(tubePoint(point, Catheter::radius, catheterWall));
        bore.push_back(tubePoint(point, Catheter::radius * 0.68, filled));
    }
    tubes_.add(shadow, wall, TubeRenderer::Filling::Hollow);
    tubes_.add(shadow, bore);
}

void Angiogram::addPuff(Plane& shadow, double time, HeartMotion::Moment moment) const {
    const double amount = flow_.inAorta(time);
    if (amount < 0.01) return;
    const auto ostium = HeartMotion::position(tree_.front().samples.front().place, moment);
    for (int part = 0; part < 4; ++part) {
        // Each heart beat tears the cloud along.
        const double swirl = time * 5 + part * 1.7;
        const auto place = ostium + Vector3{-4 + 3 * std::sin(swirl), 2 * std::cos(swirl * 1.3),
                                            2 + 4.0 * part + 2 * std::sin(swirl * 0.7)};
        const auto point = projection_.project(place);
        const double reach = (3.5 + 1.3 * part) * point.pixelsPerMm;
        const double peak = amount * (15 - 3.2 * part) * (0.75 + 0.25 * std::sin(swirl * 1.9));
        const int top = std::max(0, static_cast<int>(point.row - 3 * reach));
        const int bottom = std::min(shadow.height, static_cast<int>(point.row + 3 * reach));
        const int left = std::max(0, static_cast<int>(point.column - 3 * reach));
        const int right = std::min(shadow.width, static_cast<int>(point.column + 3 * reach));
        for (int y = top; y < bottom; ++y) {
            const double dy = (y - point.row) / reach;
            for (int x = left; x < right; ++x) {
                const double dx = (x - point.column) / reach;
                shadow.row(y)[x] += static_cast<float>(peak * std::exp(-(dx * dx + dy * dy)));
            }
        }
    }
}

void Angiogram::stainMuscle() {
    Plane filled(setup_.size, setup_.size);
    const double full = setup_.injection.start + setup_.injection.duration;
    castVessels(filled, full, {0.4, 0});
    constexpr int coarse = 32;
    muscle_ = Plane(coarse, coarse);
    const int cell = std::max(1, setup_.size / coarse);
    for (int y = 0; y < coarse * cell && y < setup_.size; ++y)
        for (int x = 0; x < coarse * cell && x < setup_.size; ++x)
            muscle_.row(y / cell)[x / cell] += std::min(filled.row(y)[x], 14.0f);
    for (int times = 0; times < 5; ++times) soften(muscle_);
    const float most = std::max(*std::max_element(muscle_.values.begin(), muscle_.values.end()), 1.0f);
    for (auto& value : muscle_.values) value *= 15 / most;
}

double Angiogram::brightness() const {
    const Plane shadow = thorax_.shadows(momentAt(0), Plane(1, 1));
    Plane open(setup_.size, setup_.size);
    std::fill(open.values.begin(), open.values.end(), 1.0f);
    collimator_.cover(open);
    double sum = 0, weight = 0;
    for (std::size_t i = 0; i < open.values.size(); ++i) {
        sum += static_cast<double>(shadow.values[i] * open.values[i]);
        weight += static_cast<double>(open.values[i]);
    }
    return middleGrey + sum / std::max(weight, 1.0);
}

std::vector<std::uint16_t> Angiogram::frame(int number) {
    const double time = number / setup_.frameRate;
    const auto moment = momentAt(time);

    Plane shadow(setup_.size, setup_.size);
    castVessels(shadow, time, moment);
    castCatheter(shadow, time, moment);
    // The focal spot and the detector blur by about half a mm.
    for (int size = 256; size < setup_.size; size *= 2) soften(shadow);
    // Hard rays come through even where contrast is deep.
    saturate(shadow, 105);
    addPuff(shadow, time, moment);
    Plane stain = muscle_;
    for (auto& value : stain.values) value *= static_cast<float>(flow_.inMuscle(time));

    Plane picture = thorax_.shadows(moment, stain);
    for (std::size_t i = 0; i < picture.values.size(); ++i)
        picture.values[i] =
            std::max(static_cast<float>(brightness_) - picture.values[i] - shadow.values[i], 12.0f);
    addQuantumNoise(picture, setup_.noise, setup_.seed * 4096 + static_cast<std::uint64_t>(number));
    collimator_.cover(picture);

    std::vector<std::uint16_t> samples(picture.values.size());
    const float most = static_cast<float>((1 << setup_.bits) - 1);
    const float scale = most / 255;
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::uint16_t>(std::clamp(picture.values[i] * scale, 0.0f, most) + 0.5f);
    return samples;
}

}  // namespace cinedisc::discmaker
