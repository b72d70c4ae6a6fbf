#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// Streams of pictures of one grey that take a decoder much more work than they have bytes.
namespace cinedisc::test {

/// A grey JPEG 2000 stream of 8 bits in one tile or more whose packets are all empty, if there are bytes for
/// them.
struct BlankJpeg2000 {
    std::size_t side = 64, tile = 64, layers = 1, levels = 0, blockBits = 6;
    std::optional<std::size_t> precinctBits = std::nullopt;
    bool inTileHeaders = false;  ///< the coding parameters that count
    std::size_t length = 0;      ///< of the whole stream, at least
};
std::vector<std::uint8_t> blankJpeg2000(const BlankJpeg2000& making);

/// A grey progressive JPEG stream; all scans but the first hold one end-of-band code after the other.
struct BlankJpeg {
    std::size_t side = 16, scans = 2, precision = 8;
};
std::vector<std::uint8_t> blankJpeg(const BlankJpeg& making);

}  // namespace cinedisc::test
