#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::discmaker {

/// Encodes grey frames as JPEG Lossless, process 14 with selection value 1 (ITU-T T.81 annex H; transfer
/// syntax 1.2.840.10008.1.2.4.70). One encoder serves any number of threads.
class JpegLosslessEncoder {
  public:
    /// `bits`: precision of the samples, 2 .. 16.
    JpegLosslessEncoder(int rows, int columns, int bits) : rows_(rows), columns_(columns), bits_(bits) {}

    /// `samples`: rows * columns values below 2^bits, row after row. Answers a whole JPEG stream, SOI to EOI.
    std::vector<std::uint8_t> encode(std::span<const std::uint16_t> samples) const;

  private:
    std::vector<std::int16_t> differences(std::span<const std::uint16_t> samples) const;

    int rows_;
    int columns_;
    int bits_;
};

}  // namespace cinedisc::discmaker
