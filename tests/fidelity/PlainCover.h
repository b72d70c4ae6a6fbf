#pragma once

#include "tests/fidelity/HeaderReader.h"
#include "tests/fidelity/Pixels.h"

namespace cinedisc::fidelity {

/// Lays the display shutter, then the overlay planes of a frame (counted from 0) over a picture, pixel by
/// pixel.
void coverPlainly(const HeaderReader& header, int frame, Pixels& picture);

}  // namespace cinedisc::fidelity
