#include "discmaker/angiogram/Projection.h"

#include <numbers>

namespace cinedisc::discmaker {

Projection::Projection(View view, int size, double fieldOfView)
    : size_(size), pixelSpacing_(fieldOfView / size), centerColumn_(size / 2.0), centerRow_(size / 2.0) {
    constexpr double degree = std::numbers::pi / 180;
    const double a = view.primaryAngle * degree, b = view.secondaryAngle * degree;
    toDetector_ = {std::sin(a) * std::cos(b), -std::cos(a) * std::cos(b), std::sin(b)};
    right_ = {std::cos(a), std::sin(a), 0};
    down_ = cross(right_, toDetector_);
}

Projection::Point Projection::project(Vector3 place) const {
    const double scale = sourceToDetector / (sourceToPatient + dot(place, toDetector_)) / pixelSpacing_;
    return {centerColumn_ + dot(place, right_) * scale, centerRow_ + dot(place, down_) * scale, scale};
}

void Projection::aimAt(Vector3 place, double across, double down) {
    const auto now = project(place);
    centerColumn_ += across * size_ - now.column;
    centerRow_ += down * size_ - now.row;
}

Vector3 Projection::ray(double column, double row) const {
    return normalized(toDetector_ * sourceToDetector + right_ * ((column - centerColumn_) * pixelSpacing_) +
                      down_ * ((row - centerRow_) * pixelSpacing_));
}

}  // namespace cinedisc::discmaker
