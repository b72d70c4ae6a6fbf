#pragma once

#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstdint>
#include <vector>

namespace cinedisc::test {

/// Interleaved samples and what an encoder must know of them.
struct Raster {
    int rows = 0, columns = 0;
    int components = 1;  ///< 1, or 3 for red, green and blue
    int bits = 8;
    std::vector<std::int32_t> samples;
    bool isSigned = false;

    std::size_t size() const { return static_cast<std::size_t>(rows * columns * components); }
};

/// Pseudo-random samples, the same for the same seed.
enum class Texture { Noise, Smooth, Flat };
Raster raster(int rows, int columns, int components, int bits, Texture texture = Texture::Smooth,
              unsigned seed = 1);

/// The format of a raster in cells of the fewest bytes.
dicom::PixelFormat formatOf(const Raster& raster);
dicom::PixelFormat greyFormat(int rows, int columns, int bits);
dicom::PixelFormat colourFormat(int rows, int columns,
                                dicom::Photometric photometric = dicom::Photometric::Rgb);

/// decodeFrame with bytes as codecs give them.
dicom::Result<dicom::Frame> decoded(const std::vector<std::uint8_t>& bytes, const dicom::PixelFormat& format,
                                    dicom::Compression compression);
/// The samples of a frame; throws with the error's text when there is none, so that a test shows it.
std::vector<std::int64_t> samplesOf(const dicom::Result<dicom::Frame>& frame);
/// The samples of a frame that shows a raster: colours have 8 bits.
std::vector<std::int64_t> shown(const Raster& raster);

}  // namespace cinedisc::test
