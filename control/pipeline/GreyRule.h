#pragma once

#include "control/pipeline/WindowInForce.h"
#include "dicom/Presentation.h"

#include <cstdint>
#include <optional>

namespace cinedisc {

enum class Polarity { Normal, Inverted };

/// The rule from one stored value to the displayed grey, 0 black to 255 white: modality step, window or VOI
/// table, MONOCHROME1, polarity. Refers to the transform that it was made from.
class GreyRule {
  public:
    GreyRule(const dicom::GreyTransform& grey, const WindowInForce& window, Polarity polarity);

    /// Padding is black whatever the polarity: it is not part of the picture.
    std::uint8_t operator()(double stored) const;

    /// From the stored value to the grey before it is rounded, kept within 0 ... 255 and inverted.
    struct Line {
        double slope;
        double offset;
        bool inverse;
    };
    /// The rule as a straight line, when there is no table or curve in it. Padding is not looked at.
    std::optional<Line> line() const;

  private:
    double windowed(double value) const;

    const dicom::GreyTransform& grey_;
    const dicom::LookupTable* table_;
    dicom::Window window_;
    double tableScale_ = 0;
    bool inverse_;
};

}  // namespace cinedisc
