#pragma once

#include "discmaker/angiogram/Plane.h"

#include <cstdint>

namespace cinedisc::discmaker {

/// Adds the grain that few X-ray quanta leave in a picture of greys 0 .. 255, slightly smeared by the
/// detector. Dark places are grainier: the pictures show the logarithm of the dose. `strength`: standard
/// deviation at middle grey, in grey steps; `number` tells one frame's grain from another's.
void addQuantumNoise(Plane& plane, double strength, std::uint64_t number);

}  // namespace cinedisc::discmaker
