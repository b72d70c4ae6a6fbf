#pragma once

#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstdint>
#include <vector>

namespace cinedisc::test {

/// Pseudo-random samples, the same for the same seed.
enum class Texture { Noise, Smooth, Flat };
std::vector<std::uint16_t> picture(std::size_t count, int bits, Texture texture, unsigned seed = 1);

/// A grey format of 8 or 16 bits allocated, whichever holds `bits`, or a colour one.
dicom::PixelFormat greyFormat(int rows, int columns, int bits);
dicom::PixelFormat colourFormat(int rows, int columns,
                                dicom::Photometric photometric = dicom::Photometric::Rgb);

/// decodeFrame with bytes as codecs give them.
dicom::Result<dicom::Frame> decoded(const std::vector<std::uint8_t>& bytes, const dicom::PixelFormat& format,
                                    dicom::Compression compression);
/// The samples of a frame; throws with the error's text when there is none, so that a test shows it.
std::vector<std::int64_t> samplesOf(const dicom::Result<dicom::Frame>& frame);

/// Any whole numbers in the type that samplesOf answers.
template <typename Numbers>
std::vector<std::int64_t> wide(const Numbers& numbers) {
    return {numbers.begin(), numbers.end()};
}

}  // namespace cinedisc::test
