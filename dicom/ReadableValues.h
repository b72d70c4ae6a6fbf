#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cinedisc::dicom {

/// A date of a header (PS3.5 section 6.2, also in the form with full stops) as "2024-01-31"; nothing when it
/// is none.
std::optional<std::string> isoDate(std::string_view value);

/// One of the two angles of a C-arm.
struct BeamAngle {
    const char* direction;  ///< as the catheter laboratory calls it
    long degrees;           ///< whole ones, never negative
};

/// From the right (RAO) or the left (LAO), straight from the front (AP) at 0 (PS3.3 C.8.7.5.1.2).
BeamAngle sidewaysAngle(double positionerPrimaryAngle);
/// Towards the head (CRAN) or the feet (CAUD).
BeamAngle tilt(double positionerSecondaryAngle);

}  // namespace cinedisc::dicom
