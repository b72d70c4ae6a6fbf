#pragma once

#include "tests/fidelity/Pixels.h"
#include "tests/fidelity/ReferenceFile.h"

namespace cinedisc::fidelity {

/// A frame, counted from 0, as DCMTK's own rendering shows it with the window that the file asks for; without
/// one, over the full stored range for 8 bits and the values of the frame otherwise. Empty when DCMTK cannot
/// render it.
Pixels dcmtkPicture(ReferenceFile& file, int frame);

}  // namespace cinedisc::fidelity
