#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// Another implementation of the JPEG processes, to encode pictures for it to disagree with.
namespace cinedisc::test {

/// A picture for an encoder: interleaved samples of `bits` bits.
struct JpegSource {
    int rows = 0, columns = 0;
    int components = 1;  ///< 1, or 3 for red, green and blue
    int bits = 8;
    std::span<const std::uint16_t> samples;
};

/// The lossless process at precision 8, 12 or 16, whichever holds the bits.
std::vector<std::uint8_t> dcmtkLossless(const JpegSource& source, int predictor, int pointTransform = 0);

enum class LossyProcess { Baseline, Sequential, Progressive };
/// A lossy process at precision 8 or 12; colour is transformed to YCbCr.
std::vector<std::uint8_t> dcmtkLossy(const JpegSource& source, LossyProcess process, int quality);

/// Decodes a stream of that size and precision, untransformed; empty when the library refuses.
std::vector<std::uint16_t> dcmtkDecoded(std::span<const std::uint8_t> stream, const JpegSource& likeThis);
/// The same for precision 8 and 12 to 16 without copying the result out, to be timed.
bool dcmtkDecode8(std::span<const std::uint8_t> stream, std::span<std::uint8_t> into);
bool dcmtkDecode12(std::span<const std::uint8_t> stream, std::span<std::uint16_t> into);
bool dcmtkDecode16(std::span<const std::uint8_t> stream, std::span<std::uint16_t> into);

}  // namespace cinedisc::test
