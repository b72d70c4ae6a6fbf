#pragma once

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

/// The largest difference of any sample, -1 when the sizes are not the same.
int largestDifference(const Pixels& a, const Pixels& b);

}  // namespace cinedisc::fidelity
