#pragma once

#include <cstdint>

namespace cinedisc::discmaker {

/// A small integer generator of pseudo-random numbers: the same sequence from the same seed on every machine.
class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15u + 0x2545F4914F6CDD1Du) {}

    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9u;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBu;
        return mixed ^ mixed >> 31;
    }
    /// Evenly between low and high.
    double between(double low, double high) {
        return low + (high - low) * static_cast<double>(next() >> 11) * 0x1p-53;
    }
    /// Close to a normal distribution with mean 0 and standard deviation 1; never beyond 3.5.
    double normal() {
        const std::uint64_t bits = next();
        std::int64_t sum = 0;
        for (int part = 0; part < 4; ++part) sum += static_cast<std::int64_t>(bits >> (16 * part) & 0xFFFF);
        // Four even numbers of 0 .. 65535: variance 4 * 65536^2 / 12.
        return static_cast<double>(sum - 131070) / 37837.2;
    }

  private:
    std::uint64_t state_;
};

}  // namespace cinedisc::discmaker
