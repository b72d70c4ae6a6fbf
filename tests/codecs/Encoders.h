#pragma once

#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstdint>
#include <span>
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

/// Where a marker begins, or the stream's length when it is not there.
std::size_t placeOf(std::span<const std::uint8_t> stream, std::uint8_t code);

enum class LossyProcess { Baseline, Sequential, Progressive };
enum class JpegColours { Ycbcr, Subsampled, Rgb };
/// A lossy process at precision 8 or 12.
std::vector<std::uint8_t> dcmtkLossy(const Raster& raster, LossyProcess process, int quality,
                                     JpegColours colours = JpegColours::Ycbcr);

struct LosslessMaking {
    int predictor = 1, pointTransform = 0;
    bool interleaved = true;  ///< false: a scan for each component, with a code table of its own
    int codedBits = 0;        ///< of which the precision announced is less; 0 for as few as there can be
};
/// The lossless process at any precision: the library's samples lie in the middle of their range.
std::vector<std::uint8_t> losslessEncoded(const Raster& raster, const LosslessMaking& making = {});
/// A grey lossless stream's picture several times below itself, each time after a restart marker.
std::vector<std::uint8_t> repeated(std::vector<std::uint8_t> stream, int times);

struct Jpeg2000Making {
    bool reversible = true;
    bool transformComponents = false;
    bool inFileFormat = false;
    int tileSize = 0;         ///< 0 for one tile
    bool subsampled = false;  ///< the second and third component have half the rows and columns
    int levels = 2;           ///< of decomposition
    int layers = 1;
    int precinct = 0;  ///< sides of the precincts of all resolutions, 0 for the largest
    int block = 64;    ///< sides of the code blocks
    int offset = 0;    ///< from the tiles' origin to the picture's, in both directions
};
/// Of subsampled components every other sample of every other row is taken.
std::vector<std::uint8_t> jpeg2000Encoded(const Raster& raster, const Jpeg2000Making& making = {});

enum class LsInterleave { None, Line, Sample };
std::vector<std::uint8_t> jpegLsEncoded(const Raster& raster, int nearLossless = 0,
                                        LsInterleave interleave = LsInterleave::None);

std::vector<std::uint8_t> rleEncoded(const Raster& raster);

}  // namespace cinedisc::test
