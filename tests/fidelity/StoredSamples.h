#pragma once

#include "tests/fidelity/HeaderReader.h"

#include <vector>

namespace cinedisc::fidelity {

/// The stored values of a native frame: masked, shifted and signed as PS3.5 section 8.1.1 says, samples of a
/// pixel side by side.
struct StoredSamples {
    int rows = 0;
    int columns = 0;
    int perPixel = 1;
    int bits = 8;
    bool isSigned = false;
    bool isFloat = false;
    std::vector<double> values;
};

/// Takes them one by one out of a data set with native little endian pixels; no values when they do not
/// suffice.
StoredSamples storedSamples(DcmItem& native);

}  // namespace cinedisc::fidelity
