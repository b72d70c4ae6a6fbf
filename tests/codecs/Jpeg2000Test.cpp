#include "dicom/codecs/FrameDecoder.h"
#include "dicom/codecs/Jpeg2000Decoder.h"
#include "dicom/codecs/Jpeg2000Header.h"
#include "dicom/codecs/JpegBounds.h"
#include "tests/codecs/BlankStreams.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <random>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;
using Bytes = std::vector<std::uint8_t>;
using Kind = dicom::DecodeError::Kind;

dicom::PixelFormat square(std::size_t side) {
    return greyFormat(static_cast<int>(side), static_cast<int>(side), 8);
}

TEST(WorkBounds, WhatAWaveletAnnouncesMustFitItsLength) {
    const std::pair<BlankJpeg2000, std::size_t> cases[] = {
        // As many bytes as there are packets.
        {{.side = 64, .precinctBits = 0}, 64 * 64},
        {{.side = 64, .precinctBits = 0, .inTileHeaders = true}, 64 * 64},
        {{.layers = 5000}, 5000},
        {{.layers = 900, .levels = 5}, 900 * 6},
        {{.layers = 40, .levels = 1, .precinctBits = 4}, 40 * (4 + 16)},
        // As many as there are code blocks but for one in 256 samples.
        {{.side = 1024, .tile = 1024, .blockBits = 2}, 256 * 256 - 1024 * 1024 / 256},
        {{.side = 1021, .tile = 1021, .levels = 3, .blockBits = 2}, 65536 - 4072},
        {{.side = 1000, .tile = 1000, .levels = 2, .blockBits = 3}, 16003 - 3906},
        {{.side = 1000, .tile = 1000, .levels = 1, .precinctBits = 3}, 50844 - 3906},
    };
    for (auto [making, enough] : cases) {
        SCOPED_TRACE(enough);
        making.length = enough;
        ASSERT_EQ(blankJpeg2000(making).size(), enough);
        const auto good =
            samplesOf(decoded(blankJpeg2000(making), square(making.side), Compression::Jpeg2000));
        EXPECT_EQ(good, std::vector<std::int64_t>(making.side * making.side, 128));
        --making.length;
        const auto bad = decoded(blankJpeg2000(making), square(making.side), Compression::Jpeg2000);
        EXPECT_EQ(bad ? Kind::NotDicom : bad.error().kind, Kind::Broken);
    }
    for (const BlankJpeg2000& making : {BlankJpeg2000{.side = 16 * 200, .tile = 16},
                                        BlankJpeg2000{.side = 16000, .tile = 16000, .levels = 5}}) {
        const auto frame = decoded(blankJpeg2000(making), square(making.side), Compression::Jpeg2000);
        EXPECT_EQ(frame ? Kind::NotDicom : frame.error().kind, Kind::TooLarge);
    }
}

// OpenJPEG writes a packet without content as one byte, and in a picture of a single grey none has content.
TEST(WorkBounds, PacketsAreCountedAsOpenJpegWritesThem) {
    std::mt19937 engine(21);
    const auto random = [&](int from, int to) {
        return from + static_cast<int>(engine() % static_cast<unsigned>(to - from + 1));
    };
    int tried = 0;
    for (int round = 0; round < 60; ++round) {
        Raster blank = raster(random(200, 300), random(200, 300), random(0, 1) ? 3 : 1, 8, Texture::Flat);
        for (auto& sample : blank.samples) sample = 128;
        Jpeg2000Making making{
            .subsampled = blank.components == 3, .levels = random(0, 4), .layers = random(3, 5)};
        making.tileSize = making.subsampled ? 0 : random(0, 1) * random(120, 160);
        making.precinct = 16;
        making.offset = random(0, 40);
        Bytes stream = jpeg2000Encoded(blank, making);
        std::size_t tiles = 0, lastTile = 0;
        for (std::size_t i = placeOf(stream, 0x90); i + 1 < stream.size(); ++i)
            if (stream[i] == 0xFF && stream[i + 1] == 0x90) ++tiles, lastTile = i;
        const std::size_t packets = stream.size() - placeOf(stream, 0x90) - 14 * tiles - 2;
        if (packets < lastTile + 20) continue;
        stream.resize(packets);
        const auto read = [&] { return dicom::codecs::readJpeg2000Header(stream, formatOf(blank)).ok(); };
        SCOPED_TRACE(testing::Message() << round << ": " << tiles << " tiles, " << packets << " packets");
        EXPECT_TRUE(read());
        stream.pop_back();
        ++tried;
        EXPECT_FALSE(read());
    }
    EXPECT_GT(tried, 20);
}

TEST(WorkBounds, PicturesDecodedInBandsAreTheSame) {
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

TEST(WorkBounds, MoreScansThanAPictureCanNeedAreNotDecoded) {
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

TEST(Jpeg2000, SubsampledComponentsAreSpread) {
    Raster picture{15, 15, 3, 8, {}};
    for (int i = 0; i < 15 * 15; ++i)
        picture.samples.insert(picture.samples.end(), {i, i / 15 / 2 * 2, i % 15 / 2 * 2});
    EXPECT_EQ(samplesOf(decoded(jpeg2000Encoded(picture, {.subsampled = true}), formatOf(picture),
                                Compression::Jpeg2000)),
              shown(picture));
}

// On a slope the lower levels of a wavelet hold the samples themselves, every other one of every other row:
// so a coarse picture is right in its values and in its place.
TEST(Jpeg2000, CoarsePicturesAreThePictureFromFurtherOff) {
    struct Case {
        const char* what;
        Jpeg2000Making making;
        int leastSide = 16, halvings = 2;
        int headerBits = 12, codedBits = 12;
        bool headerSigned = false, codedSigned = false;
        Photometric photometric = Photometric::Monochrome2;
        int components = 1;
    };
    const Case cases[] = {
        {"lossless", {}},
        {"lossy", {.reversible = false}},
        {"signed", {}, 16, 2, 12, 12, true, true},
        {"in tiles and boxes", {.inFileFormat = true, .tileSize = 40}},
        {"whole cells", {}, 16, 2, 12, 16},
        {"larger asked for", {}, 33, 1},
        {"smaller asked for than there is", {}, 4},
        {"colour", {.transformComponents = true}, 16, 2, 8, 8, false, false, Photometric::YbrRct, 3},
        {"no levels", {.levels = 0}, 16, 0},
        {"small enough", {}, 50, 0},
        {"indices", {}, 16, 0, 8, 8, false, false, Photometric::PaletteColor},
        {"signs in unsigned samples", {}, 16, 0, 12, 12, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        // Ends at the largest value, beyond which what is interpolated must not begin anew.
        Raster slope{67, 90, c.components, c.codedBits, {}, c.codedSigned};
        const int top = (1 << c.headerBits) - 1, lowest = c.codedSigned ? -(top + 1) / 2 : 0;
        for (int i = 0; i < slope.rows * slope.columns; ++i) {
            const int value = lowest + std::min(top, (i / slope.columns + i % slope.columns) * top / 140);
            slope.samples.insert(slope.samples.end(), static_cast<std::size_t>(c.components), value);
        }
        auto format = greyFormat(slope.rows, slope.columns, c.headerBits);
        format.isSigned = c.headerSigned;
        format.photometric = c.photometric;
        format.samplesPerPixel = c.components;
        auto stream = jpeg2000Encoded(slope, c.making);
        const auto coarse = dicom::decodeCoarseFrame(std::as_bytes(std::span(stream)), format, c.leastSide);
        ASSERT_EQ(coarse ? coarse->halvings : 0, c.halvings);
        if (!coarse) continue;
        const int step = 1 << c.halvings;
        ASSERT_EQ(coarse->frame.rows, (slope.rows + step - 1) / step);
        ASSERT_EQ(coarse->frame.columns, (slope.columns + step - 1) / step);
        const auto values = samplesOf(coarse->frame);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto pixel = static_cast<int>(i) / c.components;
            const int x = pixel % coarse->frame.columns * step, y = pixel / coarse->frame.columns * step;
            const auto at = static_cast<std::size_t>((y * slope.columns + x) * c.components);
            ASSERT_NEAR(static_cast<double>(values[i]), slope.samples[at],
                        2 + top / (c.making.reversible ? 100 : 50))
                << x << "," << y;
        }
        stream.resize(stream.size() / 2);
        EXPECT_FALSE(dicom::decodeCoarseFrame(std::as_bytes(std::span(stream)), format, c.leastSide));
    }
}

}  // namespace
}  // namespace cinedisc::test
