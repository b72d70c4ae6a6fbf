#pragma once

#include "tests/codecs/Pictures.h"

#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::test {

/// Where a marker begins, or the stream's length when it is not there.
std::size_t placeOf(std::span<const std::uint8_t> stream, std::uint8_t code);

/// The lossless process at precision 8, 12 or 16, whichever holds the bits.
std::vector<std::uint8_t> dcmtkLossless(const Raster& raster, int predictor, int pointTransform = 0);
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
