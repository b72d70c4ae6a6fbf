#include "tests/fidelity/Pixels.h"

#include <algorithm>
#include <cstdlib>

namespace cinedisc::fidelity {

int largestDifference(const Pixels& a, const Pixels& b) {
    if (a.rows != b.rows || a.columns != b.columns || a.rgb.size() != b.rgb.size()) return -1;
    int largest = 0;
    for (std::size_t i = 0; i < a.rgb.size(); ++i) largest = std::max(largest, std::abs(a.rgb[i] - b.rgb[i]));
    return largest;
}

}  // namespace cinedisc::fidelity
