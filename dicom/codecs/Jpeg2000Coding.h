#pragma once

#include "dicom/Result.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::dicom::codecs {

/// The reference grid of a JPEG 2000 code stream (ITU-T T.800 annex B): the picture's area on it, and its
/// tiles'. All in grid points.
struct Jpeg2000Grid {
    std::uint64_t left = 0, top = 0, right = 0, bottom = 0;
    std::uint64_t tileLeft = 0, tileTop = 0, tileWidth = 1, tileHeight = 1;
    struct Steps {
        std::uint64_t x = 1, y = 1;  ///< grid points from sample to sample
    };
    std::vector<Steps> components;

    std::uint64_t tilesAcross() const;
    std::uint64_t tiles() const;
};

/// How one component of a tile is coded (ITU-T T.800 tables A.15 and A.20).
struct Jpeg2000Coding {
    int levels = 0;                               ///< of decomposition
    int blockWidthBits = 6, blockHeightBits = 6;  ///< largest code blocks, as powers of two
    std::array<std::uint8_t, 33> precincts{};  ///< of each resolution: two powers of two, the height's higher
};

/// How a tile is coded.
struct Jpeg2000TileCoding {
    int layers = 1;
    std::vector<Jpeg2000Coding> components;

    /// Takes over a COD or COC marker segment's payload; false when it makes no sense.
    bool readForAll(std::span<const std::uint8_t> payload);
    bool readForOne(std::span<const std::uint8_t> payload);
};

/// What a decoder has to set up for tiles.
struct Jpeg2000Parts {
    std::uint64_t packets = 0, precincts = 0, codeBlocks = 0;  ///< precincts count once for each subband
};

/// The parts of one tile, counted from 0 in rows.
Jpeg2000Parts partsOfTile(const Jpeg2000Grid& grid, std::uint64_t tile, const Jpeg2000TileCoding& coding);

}  // namespace cinedisc::dicom::codecs
