#pragma once

#include <cstdint>
#include <vector>

namespace cinedisc::bench {

/// A picture as noisy as an angiogram: a soft background with dark vessels, quantum noise, and a black round
/// shutter. The same for the same arguments. `noise` is its standard deviation in grey levels.
std::vector<std::uint16_t> angiogram(int size, int bits, double noise);

}  // namespace cinedisc::bench
