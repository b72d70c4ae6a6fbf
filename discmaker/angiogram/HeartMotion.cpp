#include "discmaker/angiogram/HeartMotion.h"

#include <algorithm>
#include <numbers>

namespace cinedisc::discmaker {

Vector3 HeartMotion::axis() { return normalized({0.62, -0.56, -0.55}); }
Vector3 HeartMotion::forward() {
    const Vector3 up{0, 0, 1};
    return normalized(up - axis() * dot(up, axis()));
}
Vector3 HeartMotion::leftward() { return cross(forward(), axis()); }

double HeartMotion::contraction(double phase) {
    phase -= std::floor(phase);
    // Ejection, early filling, rest, and a last push by the atria.
    const double ventricles = smoothStep(0.02, 0.34, phase) * (1 - smoothStep(0.40, 0.62, phase));
    const double atria = smoothStep(0.86, 0.94, phase) * (1 - smoothStep(0.94, 1.0, phase));
    return ventricles - 0.10 * atria;
}

double HeartMotion::surfaceRadius(double height) {
    const double part = std::clamp(height / axisLength, 0.0, 0.999);
    return baseRadius * std::pow(1 - part * part, 0.55);
}

Vector3 HeartMotion::position(HeartPlace place, Moment moment) {
    const double c = moment.contraction;
    const double part = std::clamp(place.height / axisLength, -0.3, 1.0);
    const double toApex = std::max(part, 0.0);
    const double degree = std::numbers::pi / 180;

    // The valve plane is pulled towards the apex, most on the right; the wall moves in; the apex twists.
    const double rightSide = 0.5 - 0.5 * std::sin(place.azimuth * degree);
    const double pull = (9 + 7 * rightSide) * (1 - toApex) * (1 + std::min(part, 0.0) * 2);
    const double height = place.height + c * pull;
    const double azimuth = (place.azimuth + c * (9 * toApex - 4)) * degree;
    const double inward = 1 - c * (0.10 + 0.05 * toApex) * (part < 0 ? 1 + part * 2.5 : 1);
    const double radius = surfaceRadius(place.height) * place.depth * inward;

    const Vector3 base = axis() * (-0.42 * axisLength);
    const Vector3 swing = Vector3{-0.6, -1.6, 0.4} * c;
    return base + swing + axis() * height + forward() * (radius * std::cos(azimuth)) +
           leftward() * (radius * std::sin(azimuth)) + Vector3{0, -0.3 * moment.breath, -moment.breath};
}

}  // namespace cinedisc::discmaker
