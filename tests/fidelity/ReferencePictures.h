#pragma once

#include "tests/fidelity/ReferenceFile.h"

#include <cstdint>
#include <vector>

namespace cinedisc::fidelity {

/// A displayed picture: red, green and blue interleaved, 8 bit each; the three are the same for grey.
struct Pixels {
    int rows = 0;
    int columns = 0;
    std::vector<std::uint8_t> rgb;

    bool empty() const { return rgb.empty(); }
};

/// The displayed picture of a frame, counted from 0, computed pixel by pixel with the standard's formulas;
/// empty when the frame cannot be decoded.
Pixels plainPicture(ReferenceFile& file, int frame);
/// The same as DCMTK's own rendering shows it with the window that the file asks for; without one, over the
/// full stored range for 8 bits and the values of the frame otherwise. Empty when DCMTK cannot render it.
Pixels dcmtkPicture(ReferenceFile& file, int frame);

}  // namespace cinedisc::fidelity
