#pragma once

#include "tests/codecs/Pictures.h"

#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::test {

/// What an 8-bit JPEG stream says about its three components.
struct JpegMaking {
    enum class Stored { Rgb, Ycc };
    enum class Marker { None, Jfif, AdobeRgb, AdobeYcc };
    enum class Names { Numbers, Letters };  ///< components 1, 2, 3 or R, G, B
    Stored stored = Stored::Ycc;
    Marker marker = Marker::Jfif;
    Names names = Names::Numbers;
    bool subsampled = false;
    bool progressive = false;
    int restartInterval = 0;
};
/// At the best quality.
std::vector<std::uint8_t> jpegEncoded(const Raster& raster, const JpegMaking& making = {});

/// The lossless process at precision 8, 12 or 16, whichever holds the bits.
std::vector<std::uint8_t> dcmtkLossless(const Raster& raster, int predictor, int pointTransform = 0);
enum class LossyProcess { Baseline, Sequential, Progressive };
/// A lossy process at precision 8 or 12; colour is transformed to YCbCr.
std::vector<std::uint8_t> dcmtkLossy(const Raster& raster, LossyProcess process, int quality);
/// Decodes a JPEG stream of that size and precision by DCMTK, untransformed; empty when it refuses.
std::vector<std::int32_t> dcmtkDecoded(std::span<const std::uint8_t> stream, const Raster& likeThis);

struct LosslessMaking {
    int predictor = 1;
    int pointTransform = 0;
    int restartRows = 0;
    bool interleaved = true;    ///< false: a scan for each component
    bool rowsAnnounced = true;  ///< false: the frame header says 0 rows
    /// The symbol of one bit in the first component's table, whose codes grow by one bit from symbol to
    /// symbol; -1 for codes of 5 bits, which the other components have.
    int shortest = -1;
};
/// By the letter of ITU-T T.81 annex H, for what no library encodes.
std::vector<std::uint8_t> losslessEncoded(const Raster& raster, const LosslessMaking& making = {});

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
};
/// Of subsampled components every other sample of every other row is taken.
std::vector<std::uint8_t> jpeg2000Encoded(const Raster& raster, const Jpeg2000Making& making = {});

enum class LsInterleave { None, Line, Sample };
std::vector<std::uint8_t> jpegLsEncoded(const Raster& raster, int nearLossless = 0,
                                        LsInterleave interleave = LsInterleave::None);

std::vector<std::uint8_t> rleEncoded(const Raster& raster);

}  // namespace cinedisc::test
