#pragma once

#include "tests/fidelity/Pixels.h"
#include "tests/fidelity/ReferenceFile.h"

namespace cinedisc::fidelity {

/// The displayed picture of a frame, counted from 0, computed pixel by pixel with the standard's formulas;
/// empty when the frame cannot be decoded.
Pixels plainPicture(ReferenceFile& file, int frame);

}  // namespace cinedisc::fidelity
