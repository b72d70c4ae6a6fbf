#pragma once

#include "discmaker/angiogram/Plane.h"

#include <cstdint>
#include <vector>

namespace cinedisc::discmaker {

/// The grain that few X-ray quanta leave in a picture, slightly smeared by the detector. Dark places are
/// grainier: the pictures show the logarithm of the dose.
class QuantumNoise {
  public:
    /// `strength`: standard deviation at middle grey, in grey steps of 0 .. 255.
    explicit QuantumNoise(double strength);

    /// Adds frame `number`'s grain to greys of 0 .. 255.
    void addTo(Plane& plane, std::uint64_t number) const;

  private:
    std::vector<float> strengths_;  ///< by grey
};

}  // namespace cinedisc::discmaker
