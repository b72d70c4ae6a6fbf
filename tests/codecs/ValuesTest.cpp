#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;
using Bytes = std::vector<std::uint8_t>;
using Values = std::vector<std::int64_t>;

/// Whether two pictures differ by no more than a loss.
void expectNear(const Values& found, const Values& expected, int loss) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) ASSERT_NEAR(found[i], expected[i], loss) << i;
}

TEST(Values, PrecisionOfTheStreamWinsUnlessItHoldsWholeCells) {
    struct Case {
        const char* what;
        int precision, stored, high;
        bool isSigned;
        Values expected;
        bool beyondPrecision = false;
    };
    const Case cases[] = {
        {"whole cells, overlay above", 16, 12, 11, false, {0x801, 0xFFF, 0x7FF, 0x800}},
        {"whole cells, signed", 16, 12, 11, true, {-2047, -1, 2047, -2048}},
        {"whole cells, from the top", 16, 12, 15, false, {0xF80, 0xFF, 0x7F, 0x80}},
        {"as announced", 12, 12, 11, true, {-2047, -1, 2047, -2048}},
        {"more than announced", 12, 10, 9, false, {0x801, 0xFFF, 0x7FF, 0x800}},
        {"more than announced, signed", 12, 10, 9, true, {-2047, -1, 2047, -2048}},
        {"less than announced, signed", 12, 16, 15, true, {0x801, 0xFFF, 0x7FF, 0x800}},
        {"with sign bits above", 12, 12, 11, true, {-2047, -1, 2047, -2048}, true},
        {"beyond the precision", 12, 16, 15, false, {}, true},
    };
    for (const Case& c : cases) {
        Raster cells{2, 2, 1, c.precision, {0xF801, 0x0FFF, 0x07FF, 0x0800}};
        if (!c.beyondPrecision)
            for (auto& sample : cells.samples) sample &= (1 << c.precision) - 1;
        auto format = greyFormat(2, 2, 16);
        format.bitsStored = c.stored;
        format.highBit = c.high;
        format.isSigned = c.isSigned;
        const auto stream = losslessEncoded(cells, {.codedBits = c.beyondPrecision ? 16 : 0});
        const auto frame = decoded(stream, format, Compression::Jpeg);
        ASSERT_EQ(frame.ok(), !c.expected.empty()) << c.what;
        if (frame) {
            EXPECT_EQ(samplesOf(frame), c.expected) << c.what;
        }
    }
}

TEST(Values, WhatALossCarriesBeyondTheRangeBecomesItsEnd) {
    // 12 bits stored in 16: white, a little above, a little below black, and black.
    enum class Coder { LossyJpegLs, Jpeg2000, SignedJpeg2000 };
    struct Case {
        const char* what;
        Coder coder;
        bool headerSigned;
        int high;
        std::int32_t coded;
        std::int64_t expected, expectedInColour;
    };
    const Case cases[] = {
        {"above, near-lossless", Coder::LossyJpegLs, false, 11, 4102, 4095, 255},
        {"above, signed, near-lossless", Coder::LossyJpegLs, true, 11, 2054, 2047, -1},
        {"below, signed, near-lossless", Coder::LossyJpegLs, true, 11, 0x10000 - 2054, -2048, -1},
        {"above, wavelet", Coder::Jpeg2000, false, 11, 4098, 4095, 255},
        {"above, wavelet, from the top", Coder::Jpeg2000, false, 14, 8 * 4095 + 9, 4095, 255},
        {"within, wavelet", Coder::Jpeg2000, false, 11, 2048, 2048, 128},
        {"above, signed wavelet", Coder::SignedJpeg2000, true, 11, 2050, 2047, -1},
        {"below, signed wavelet", Coder::SignedJpeg2000, true, 11, -2050, -2048, -1},
        {"below, signed wavelet of unsigned values", Coder::SignedJpeg2000, false, 11, -3, 0, 0},
        {"above, signed wavelet of unsigned values", Coder::SignedJpeg2000, false, 11, 4098, 4095, 255},
    };
    for (const Case& c : cases)
        for (const int components : {1, 3}) {
            const auto expected = components == 3 ? c.expectedInColour : c.expected;
            if (components == 3 && expected < 0) continue;
            Raster cells{32, 32, components, 16, {}, c.coder == Coder::SignedJpeg2000};
            cells.samples.assign(cells.size(), c.coded);
            auto format = formatOf(cells);
            format.bitsStored = 12;
            format.highBit = c.high;
            format.isSigned = c.headerSigned;
            format.mayBeLossy = true;
            const bool isLs = c.coder == Coder::LossyJpegLs;
            const auto stream = isLs ? jpegLsEncoded(cells, 3) : jpeg2000Encoded(cells);
            EXPECT_EQ(samplesOf(decoded(stream, format, isLs ? Compression::JpegLs : Compression::Jpeg2000)),
                      Values(cells.size(), expected))
                << c.what;
        }
}

TEST(Values, BitsBesideThemAreHandedOut) {
    const Raster cells = raster(32, 32, 1, 16);
    auto format = greyFormat(32, 32, 12);
    format.isSigned = true;
    struct Case {
        Bytes stream;
        bool hasAll;
    };
    const Case cases[] = {
        {losslessEncoded(cells), true},
        {jpegLsEncoded(cells), true},
        {jpeg2000Encoded(cells), true},
        {rleEncoded(cells), true},
        // Lossy streams, those of another precision and of colour have no such bits.
        {jpegLsEncoded(cells, 3), false},
        {jpeg2000Encoded(cells, {.reversible = false}), false},
        {losslessEncoded(raster(32, 32, 1, 12)), false},
        {losslessEncoded(raster(32, 32, 3, 16)), false},
    };
    for (const Case& c : cases) {
        const auto frame = decodeFrame(std::as_bytes(std::span(c.stream)), format, Compression::Rle, false, 0,
                                       dicom::CellBits::All);
        ASSERT_EQ(frame.ok(), c.hasAll) << &c - cases;
        if (c.hasAll) {
            EXPECT_EQ(samplesOf(frame), shown(cells));
        }
    }
}

/// Coloured fields, the left one orange, the right one blue.
Raster fields(int rows, int columns, int bits = 8) {
    Raster raster{rows, columns, 3, bits, {}};
    for (int i = 0; i < rows * columns; ++i)
        for (const int part : i % columns < columns / 2 ? std::array{230, 120, 30} : std::array{20, 40, 200})
            raster.samples.push_back(part << (bits - 8));
    return raster;
}

TEST(Values, ColoursOfJpegAreWhatTheStreamSaysAndOnlyThenWhatTheHeaderSays) {
    using enum JpegMaking::Marker;
    const auto rgb = Photometric::Rgb, full = Photometric::YbrFull, pairs = Photometric::YbrFull422;
    struct Case {
        const char* what;
        JpegMaking making;
        Photometric photometric;
        Bytes more = {};  ///< before the scan
    };
    const Case cases[] = {
        {"JFIF under YBR_FULL_422", {}, pairs},
        {"JFIF under RGB", {}, rgb},
        {"Adobe's YCbCr under RGB", {.marker = Adobe}, rgb},
        {"Adobe's RGB under YBR_FULL", {.storedAsRgb = true, .marker = Adobe}, full},
        {"Adobe's RGB under RGB", {.storedAsRgb = true, .marker = Adobe}, rgb},
        {"Adobe's marker cut short",
         {.marker = None},
         full,
         {255, 0xEE, 0, 13, 'A', 'd', 'o', 'b', 'e', 0, 1, 0, 0, 0, 0}},
        {"a marker like JFIF's",
         {.storedAsRgb = true, .marker = None},
         rgb,
         {255, 0xE0, 0, 7, 'J', 'F', 'I', 'F', 1}},
        {"nothing but YBR_FULL", {.marker = None}, full},
        {"nothing but RGB", {.storedAsRgb = true, .marker = None}, rgb},
        {"named R, G, B under YBR_FULL", {.storedAsRgb = true, .marker = None, .names = "RGB"}, full},
        {"named nearly so", {.marker = None, .names = "RGC"}, full},
        {"named nearly so too", {.marker = None, .names = "RHB"}, full},
        {"subsampled under RGB", {.marker = None, .subsampled = true}, rgb},
        {"subsampled", {.subsampled = true}, pairs},
        {"progressive", {.progressive = true}, full},
        {"with restarts", {.restartInterval = 2}, full},
    };
    const Raster picture = fields(24, 32);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Bytes stream = jpegEncoded(picture, c.making);
        stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(placeOf(stream, 0xDA)), c.more.begin(),
                      c.more.end());
        auto result = samplesOf(decoded(stream, colourFormat(24, 32, c.photometric), Compression::Jpeg));
        auto expected = shown(picture);
        // Subsampling blurs the border.
        for (std::size_t i = 0; i < result.size(); ++i)
            if (c.making.subsampled && (i / 3 % 32 == 15 || i / 3 % 32 == 16)) result[i] = expected[i];
        expectNear(result, expected, 3);
    }
}

TEST(Values, JpegIsDecodedLikeByAnotherDecoder) {
    for (const auto process : {LossyProcess::Baseline, LossyProcess::Sequential, LossyProcess::Progressive})
        for (const int bits : {8, 12}) {
            if (bits == 12 && process == LossyProcess::Baseline) continue;
            Raster picture = raster(50, 83, 1, bits);
            const auto stream = dcmtkLossy(picture, process, 85);
            const auto frame = decoded(stream, formatOf(picture), Compression::Jpeg);
            picture.samples = dcmtkDecoded(stream, picture);
            EXPECT_EQ(samplesOf(frame), shown(picture))
                << bits << " bit, process " << static_cast<int>(process);
        }
    const Raster colour = fields(16, 16, 12);
    auto format = formatOf(colour);
    format.photometric = Photometric::YbrFull;
    const auto stream = dcmtkLossy(colour, LossyProcess::Sequential, 100);
    expectNear(samplesOf(decoded(stream, format, Compression::Jpeg)), shown(colour), 6);
}

TEST(Values, NumberOfComponentsFollowsTheHeader) {
    const auto grey =
        samplesOf(decoded(jpegEncoded(fields(16, 16)), greyFormat(16, 16, 8), Compression::Jpeg));
    ASSERT_EQ(grey.size(), 256u);
    EXPECT_NEAR(static_cast<double>(grey[0]), 0.299 * 230 + 0.587 * 120 + 0.114 * 30, 2);
    const Raster one = raster(9, 7, 1, 8);
    Values threefold;
    for (const auto value : one.samples) threefold.insert(threefold.end(), 3, value);
    EXPECT_EQ(samplesOf(decoded(losslessEncoded(one), colourFormat(9, 7), Compression::Jpeg)), threefold);
}

TEST(Values, SignOfAWaveletFollowsTheHeader) {
    Raster asUnsigned = raster(20, 20, 1, 13, Texture::Noise), below = asUnsigned;
    below.isSigned = true;
    for (auto& sample : below.samples) sample -= sample > 4095 ? 8192 : 0;
    const auto values = [](const Raster& coded, const Raster& header) {
        return samplesOf(decoded(jpeg2000Encoded(coded), formatOf(header), Compression::Jpeg2000));
    };
    EXPECT_EQ(values(asUnsigned, below), shown(below));
    EXPECT_EQ(values(below, asUnsigned), shown(asUnsigned));
}

TEST(Values, ColoursOfAWaveletAreTransformedAsTheStreamSays) {
    Raster rgb = fields(24, 24), ybr{24, 24, 3, 8, {}};
    for (int i = 0; i < 24 * 24; ++i) ybr.samples.insert(ybr.samples.end(), {76, 85, 255});
    struct Case {
        const char* what;
        const Raster& picture;
        Jpeg2000Making making;
        Photometric photometric;
        Values firstPixel = {230, 120, 30};
    };
    const Jpeg2000Making transformed{.transformComponents = true}, plain{};
    const Case cases[] = {
        {"transformed", rgb, transformed, Photometric::YbrRct},
        {"transformed, named RGB", rgb, transformed, Photometric::Rgb},
        {"transformed, named YBR_FULL", rgb, transformed, Photometric::YbrFull},
        {"not transformed, named so", rgb, plain, Photometric::YbrRct},
        {"not transformed, named otherwise", rgb, plain, Photometric::YbrIct},
        {"not transformed", rgb, plain, Photometric::Rgb},
        {"lossy", rgb, {.reversible = false, .transformComponents = true}, Photometric::YbrIct},
        {"YBR_FULL within", ybr, plain, Photometric::YbrFull, {254, 0, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto result = samplesOf(decoded(jpeg2000Encoded(c.picture, c.making),
                                              colourFormat(24, 24, c.photometric), Compression::Jpeg2000));
        expectNear({result.begin(), result.begin() + 3}, c.firstPixel, c.making.reversible ? 0 : 3);
    }
}

}  // namespace
}  // namespace cinedisc::test
