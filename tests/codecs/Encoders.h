#pragma once

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

/// Encodes interleaved samples at the best quality.
std::vector<std::uint8_t> jpegEncoded(std::span<const std::uint8_t> samples, int rows, int columns,
                                      int components, const JpegMaking& making = {});

struct Jpeg2000Making {
    int precision = 8;
    bool isSigned = false;
    bool reversible = true;
    bool transformComponents = false;
    bool inFileFormat = false;
    int tileSize = 0;         ///< 0 for one tile
    bool subsampled = false;  ///< the second and third component have half the rows and columns
    int layers = 1;
    int precinct = 0;  ///< sides of the precincts of all resolutions, 0 for the largest
    int block = 64;    ///< sides of the code blocks
};

/// Encodes interleaved samples; of subsampled components every other one of every other row is taken.
std::vector<std::uint8_t> jpeg2000Encoded(std::span<const std::int32_t> samples, int rows, int columns,
                                          int components, const Jpeg2000Making& making);

enum class LsInterleave { None, Line, Sample };
/// Encodes interleaved samples of `bits` bits.
std::vector<std::uint8_t> jpegLsEncoded(std::span<const std::uint16_t> samples, int rows, int columns,
                                        int components, int bits, LsInterleave interleave, int nearLossless);

}  // namespace cinedisc::test
