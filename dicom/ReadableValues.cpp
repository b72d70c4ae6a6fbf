#include "dicom/ReadableValues.h"

#include <algorithm>
#include <cmath>

namespace cinedisc::dicom {

std::optional<std::string> isoDate(std::string_view value) {
    std::string date(value);
    std::erase(date, '.');
    const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    if (date.size() != 8 || !std::all_of(date.begin(), date.end(), isDigit)) return std::nullopt;
    return date.insert(6, "-").insert(4, "-");
}

namespace {

/// Whole degrees; nonsense stays a number.
long wholeDegrees(double angle) { return std::lround(std::clamp(angle, -999.0, 999.0)); }

}  // namespace

BeamAngle sidewaysAngle(double positionerPrimaryAngle) {
    const long degrees = wholeDegrees(positionerPrimaryAngle);
    return {degrees == 0 ? "AP" : degrees < 0 ? "RAO" : "LAO", std::abs(degrees)};
}

BeamAngle tilt(double positionerSecondaryAngle) {
    const long degrees = wholeDegrees(positionerSecondaryAngle);
    return {degrees < 0 ? "CAUD" : "CRAN", std::abs(degrees)};
}

}  // namespace cinedisc::dicom
