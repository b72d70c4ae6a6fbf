#include "dicom/codecs/Jpeg2000Coding.h"
#include "dicom/codecs/Jpeg2000Decoder.h"
#include "dicom/codecs/JpegBounds.h"
#include "tests/codecs/BlankStreams.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using Kind = dicom::DecodeError::Kind;

TEST(Jpeg2000Bounds, WhatAStreamAnnouncesMustFitItsLength) {
    struct Case {
        const char* what;
        BlankJpeg2000 stream;
        std::size_t enough;  ///< bytes
    };
    const Case cases[] = {
        {"precincts of one sample", {.side = 64, .precinctBits = 0}, 64 * 64},
        {"precincts in a tile's header", {.side = 64, .precinctBits = 0, .inTileHeaders = true}, 64 * 64},
        {"layers", {.layers = 5000}, 5000},
        {"layers of all resolutions", {.layers = 900, .levels = 5}, 900 * 6},
        {"layers of all precincts", {.layers = 40, .levels = 1, .precinctBits = 4}, 40 * (4 + 16)},
        {"code blocks", {.side = 1024, .tile = 1024, .blockBits = 2}, 256 * 256 - 1024 * 1024 / 256},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto format = greyFormat(static_cast<int>(c.stream.side), static_cast<int>(c.stream.side), 8);
        BlankJpeg2000 making = c.stream;
        making.length = c.enough;
        ASSERT_EQ(blankJpeg2000(making).size(), c.enough);
        const auto good = samplesOf(decoded(blankJpeg2000(making), format, Compression::Jpeg2000));
        EXPECT_EQ(good, std::vector<std::int64_t>(making.side * making.side, 128));
        --making.length;
        const auto bad = decoded(blankJpeg2000(making), format, Compression::Jpeg2000);
        ASSERT_FALSE(bad.ok());
        EXPECT_EQ(bad.error().kind, Kind::Broken) << bad.error().message;
    }
    const BlankJpeg2000 tiles{.side = 16 * 200, .tile = 16};
    EXPECT_EQ(
        decoded(blankJpeg2000(tiles), greyFormat(16 * 200, 16 * 200, 8), Compression::Jpeg2000).error().kind,
        Kind::TooLarge);
    const BlankJpeg2000 large{.side = 16000, .tile = 16000, .levels = 5};
    EXPECT_EQ(decoded(blankJpeg2000(large), greyFormat(16000, 16000, 8), Compression::Jpeg2000).error().kind,
              Kind::TooLarge);
}

/// Counts by walking over all coordinates; halves them one decomposition after the other.
dicom::codecs::Jpeg2000Parts slowParts(const dicom::codecs::Jpeg2000Grid& grid, std::uint64_t tile,
                                       const dicom::codecs::Jpeg2000TileCoding& coding) {
    using Range = std::pair<std::uint64_t, std::uint64_t>;
    const auto samples = [](std::uint64_t from, std::uint64_t to, std::uint64_t step) {
        Range range{(from + step - 1) / step, (to + step - 1) / step};
        return range;
    };
    const auto low = [](Range r) { return Range{(r.first + 1) / 2, (r.second + 1) / 2}; };
    const auto high = [](Range r) { return Range{r.first / 2, r.second / 2}; };
    const auto cells = [](Range r, int bits) {
        std::set<std::uint64_t> found;
        for (std::uint64_t at = r.first; at < r.second; ++at) found.insert(at >> bits);
        return found.size();
    };
    const std::uint64_t column = tile % grid.tilesAcross(), row = tile / grid.tilesAcross();
    dicom::codecs::Jpeg2000Parts parts;
    for (std::size_t c = 0; c < grid.components.size(); ++c) {
        const auto& own = coding.components[c];
        Range x = samples(std::max(grid.left, grid.tileLeft + column * grid.tileWidth),
                          std::min(grid.right, grid.tileLeft + (column + 1) * grid.tileWidth),
                          grid.components[c].x);
        Range y =
            samples(std::max(grid.top, grid.tileTop + row * grid.tileHeight),
                    std::min(grid.bottom, grid.tileTop + (row + 1) * grid.tileHeight), grid.components[c].y);
        for (int resolution = own.levels; resolution >= 0; --resolution) {
            const auto sides = own.precincts[static_cast<std::size_t>(resolution)];
            const std::uint64_t precincts = cells(x, sides & 15) * cells(y, sides >> 4);
            parts.packets += precincts * static_cast<std::uint64_t>(coding.layers);
            parts.precincts += precincts * (resolution ? 3 : 1);
            const int width = std::min(own.blockWidthBits, (sides & 15) - (resolution ? 1 : 0)),
                      height = std::min(own.blockHeightBits, (sides >> 4) - (resolution ? 1 : 0));
            if (resolution == 0) {
                parts.codeBlocks += cells(x, width) * cells(y, height);
            } else {
                parts.codeBlocks += cells(high(x), width) * cells(low(y), height) +
                                    cells(low(x), width) * cells(high(y), height) +
                                    cells(high(x), width) * cells(high(y), height);
                x = low(x), y = low(y);
            }
        }
    }
    return parts;
}

TEST(Jpeg2000Bounds, PartsAreThoseThatASlowCountFinds) {
    std::mt19937 random(21);
    const auto within = [&](unsigned from, unsigned to) { return from + random() % (to - from + 1); };
    for (int round = 0; round < 300; ++round) {
        dicom::codecs::Jpeg2000Grid grid;
        grid.tileLeft = within(0, 9), grid.tileTop = within(0, 9);
        grid.tileWidth = within(10, 70), grid.tileHeight = within(10, 70);
        grid.left = grid.tileLeft + within(0, 9), grid.top = grid.tileTop + within(0, 9);
        grid.right = grid.left + within(1, 150), grid.bottom = grid.top + within(1, 150);
        dicom::codecs::Jpeg2000TileCoding coding;
        coding.layers = static_cast<int>(within(1, 5));
        for (unsigned i = within(1, 3); i > 0; --i) {
            grid.components.push_back({within(1, 3), within(1, 3)});
            dicom::codecs::Jpeg2000Coding own;
            own.levels = static_cast<int>(within(0, 7));
            own.blockWidthBits = static_cast<int>(within(2, 6));
            own.blockHeightBits = static_cast<int>(within(2, 6));
            for (auto& sides : own.precincts)
                sides = static_cast<std::uint8_t>(within(1, 8) | within(1, 8) << 4);
            coding.components.push_back(own);
        }
        const std::uint64_t tile = random() % grid.tiles();
        const auto fast = partsOfTile(grid, tile, coding), slow = slowParts(grid, tile, coding);
        ASSERT_EQ(fast.packets, slow.packets) << round;
        ASSERT_EQ(fast.precincts, slow.precincts) << round;
        ASSERT_EQ(fast.codeBlocks, slow.codeBlocks) << round;
    }
}

TEST(Jpeg2000Bounds, PicturesDecodedInBandsAreTheSame) {
    const std::pair<Raster, Jpeg2000Making> cases[] = {
        {raster(600, 40, 1, 12), {.layers = 3}},
        {raster(600, 40, 3, 8), {.reversible = false, .transformComponents = true}},
        {raster(600, 40, 3, 8), {.transformComponents = true, .tileSize = 100, .precinct = 64}},
        {raster(600, 40, 3, 8), {.subsampled = true, .block = 16}},
    };
    for (const auto& [picture, making] : cases) {
        const auto stream = jpeg2000Encoded(picture, making);
        const auto whole = dicom::codecs::decodeJpeg2000(stream, formatOf(picture));
        const auto inBands = dicom::codecs::decodeJpeg2000(stream, formatOf(picture), 1000);
        ASSERT_TRUE(whole.ok() && inBands.ok());
        EXPECT_TRUE(whole.value().cells == inBands.value().cells);
    }
}

TEST(JpegBounds, MoreScansThanAPictureCanNeedAreNotDecoded) {
    const auto format = greyFormat(16, 16, 8);
    EXPECT_EQ(samplesOf(decoded(blankJpeg({.side = 16, .scans = 100}), format, Compression::Jpeg)),
              std::vector<std::int64_t>(256, 128));
    EXPECT_EQ(decoded(blankJpeg({.side = 16, .scans = 101}), format, Compression::Jpeg).error().kind,
              Kind::Broken);

    const auto error = [](int precision, std::uint8_t process, std::size_t side, std::size_t scans) {
        const Bytes stream = blankJpeg({.side = side, .scans = scans});
        dicom::codecs::JpegHeader header = dicom::codecs::readJpegHeader(stream).value();
        header.precision = precision;
        header.startOfFrame = process;
        const auto found = dicom::codecs::jpegWorkError(
            stream, header, greyFormat(static_cast<int>(side), static_cast<int>(side), 8));
        return found ? std::optional(found->kind) : std::nullopt;
    };
    using namespace dicom::codecs::marker;
    EXPECT_EQ(error(8, sof2, 8192, 64), std::nullopt) << "2 ^ 26 blocks";
    EXPECT_EQ(error(8, sof2, 8193, 64), Kind::Broken);
    EXPECT_EQ(error(8, sof2, 11500, 2), std::nullopt);
    EXPECT_EQ(error(8, sof2, 12000, 2), Kind::TooLarge) << "coefficients of 2 bytes each";
    EXPECT_EQ(error(12, sof2, 10000, 2), std::nullopt);
    EXPECT_EQ(error(12, sof2, 10500, 2), Kind::TooLarge);
    EXPECT_EQ(error(8, sof0, 16000, 2), std::nullopt) << "the first scan holds all";
    EXPECT_EQ(error(12, sof1, 16000, 1), Kind::TooLarge);
}

}  // namespace
}  // namespace cinedisc::test
