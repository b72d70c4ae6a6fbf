#include "discmaker/angiogram/VesselGrower.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cinedisc::discmaker {

namespace {

constexpr double degreesPerRadian = 180 / std::numbers::pi;

double apart(const HeartPlace& a, const HeartPlace& b) {
    return length(HeartMotion::position(a, {}) - HeartMotion::position(b, {}));
}

/// The course as a smooth curve, a place about every mm.
std::vector<HeartPlace> smoothCourse(std::span<const HeartPlace> course) {
    std::vector<HeartPlace> places{course.front()};
    for (std::size_t i = 0; i + 1 < course.size(); ++i) {
        const auto& before = course[i > 0 ? i - 1 : 0];
        const auto& after = course[std::min(i + 2, course.size() - 1)];
        const int steps = std::max(2, static_cast<int>(apart(course[i], course[i + 1])));
        for (int step = 1; step <= steps; ++step)
            places.push_back(spline(before, course[i], course[i + 1], after, double(step) / steps));
    }
    return places;
}

double roomAround(const HeartPlace& place) {
    return std::max(10.0, HeartMotion::surfaceRadius(place.height));
}

}  // namespace

std::size_t VesselGrower::grow(std::span<const HeartPlace> course, Calibre calibre, double startDistance,
                               double originRadius) {
    auto places = smoothCourse(course);
    // Vessels wind a little, each in its own way.
    const double waves[2] = {random_.between(15, 22), random_.between(24, 38)};
    const double starts[3] = {random_.between(0, 6.3), random_.between(0, 6.3), random_.between(0, 6.3)};
    const double sway = std::min(1.0, 0.35 + calibre.start * 0.35);
    double along = 0;
    for (auto& place : places) {
        const double fade = std::min(1.0, along / 8) * sway;
        place.height += fade * (0.8 * std::sin(along * 6.28 / waves[0] + starts[0]) +
                                0.6 * std::sin(along * 6.28 / waves[1] + starts[1]));
        place.azimuth +=
            fade * 1.4 * std::sin(along * 6.28 / waves[1] + starts[2]) / roomAround(place) * degreesPerRadian;
        along += 1;
    }

    Vessel vessel;
    vessel.originRadius = originRadius;
    double distance = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (i > 0) distance += apart(places[i - 1], places[i]);
        vessel.samples.push_back({places[i], 0, startDistance + distance});
    }
    for (auto& sample : vessel.samples) {
        const double part = (sample.distance - startDistance) / std::max(distance, 1.0);
        const double ripple =
            1 + 0.035 * std::sin(sample.distance * 0.9 + starts[0]) + 0.03 * std::sin(sample.distance * 0.37);
        const double tip = std::min(1.0, 0.25 + (1 - part) * distance / 9);
        sample.radius = (calibre.start + (calibre.end - calibre.start) * std::pow(part, 0.85)) *
                        anatomy_.calibre * ripple * tip;
    }
    vessels_.push_back(std::move(vessel));
    return vessels_.size() - 1;
}

std::size_t VesselGrower::trunk(std::span<const HeartPlace> course, Calibre calibre) {
    return grow(course, calibre, 0, 1.4);
}

std::size_t VesselGrower::branch(std::size_t parent, double part, std::vector<HeartPlace> course,
                                 Calibre calibre) {
    const auto& samples = vessels_[parent].samples;
    const auto origin = samples[static_cast<std::size_t>(part * static_cast<double>(samples.size() - 1))];
    course.insert(course.begin(), origin.place);
    return grow(course, calibre, origin.distance, origin.radius);
}

std::vector<HeartPlace> VesselGrower::twigCourse(const Vessel& parent, std::size_t at, double side,
                                                 double reach) {
    const auto& here = parent.samples[at].place;
    const auto& ahead = parent.samples[std::min(at + 3, parent.samples.size() - 1)].place;
    const auto& behind = parent.samples[at >= 3 ? at - 3 : 0].place;
    const double room = roomAround(here);
    double heading =
        std::atan2((ahead.azimuth - behind.azimuth) / degreesPerRadian * room, ahead.height - behind.height);
    heading += side * random_.between(0.6, 1.15);
    const double bend = -side * random_.between(0.05, 0.32) + random_.between(-0.2, 0.2);

    std::vector<HeartPlace> course{here};
    HeartPlace place = here;
    const int steps = 4;
    for (int step = 0; step < steps; ++step) {
        place.height += std::cos(heading) * reach / steps;
        place.azimuth += std::sin(heading) * reach / steps / room * degreesPerRadian;
        place.height = std::min(place.height, HeartMotion::axisLength - 1);
        place.depth -= 0.012;
        heading += bend + random_.between(-0.22, 0.22);
        course.push_back(place);
    }
    return course;
}

void VesselGrower::twigs(std::size_t parent, double spacing, double longest) {
    const double start = vessels_[parent].samples.front().distance;
    const double end = vessels_[parent].samples.back().distance;
    double side = random_.between(0, 1) < 0.5 ? -1 : 1;
    double next = start + std::min(spacing, (end - start) / 3) * random_.between(0.6, 1.2);
    for (std::size_t i = 0; i < vessels_[parent].samples.size(); ++i) {
        const auto sample = vessels_[parent].samples[i];
        if (sample.distance < next || i + 2 >= vessels_[parent].samples.size()) continue;
        next = sample.distance + spacing * random_.between(0.55, 1.5);
        side = -side;
        const double reach = longest * random_.between(0.45, 1.0);
        const double radius = std::min(0.55 * sample.radius, 0.27 + 0.017 * reach * anatomy_.calibre);
        const auto twig = grow(twigCourse(vessels_[parent], i, side, reach), {radius, 0.14}, sample.distance,
                               sample.radius);
        if (reach > 11) twigs(twig, 7, reach * 0.5);
    }
}

void VesselGrower::narrow(std::size_t vessel, Lesion::Site site) {
    auto& samples = vessels_[vessel].samples;
    for (const auto& lesion : anatomy_.lesions) {
        if (lesion.site != site) continue;
        const double middle =
            samples.front().distance + lesion.at * (samples.back().distance - samples.front().distance);
        for (auto& sample : samples) {
            const double away = (sample.distance - middle) / (lesion.length / 2);
            // One shoulder is steeper than the other, as plaques are.
            const double shape = std::exp(-std::pow(std::abs(away), away < 0 ? 2.0 : 2.8));
            sample.radius *= 1 - lesion.narrowing * shape;
        }
    }
}

}  // namespace cinedisc::discmaker
