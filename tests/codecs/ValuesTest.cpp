#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <array>

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

Bytes lossless(const Raster& cells) { return losslessEncoded(cells); }
Bytes beyondPrecision(const Raster& cells) { return losslessEncoded(cells, {.codedBits = 16}); }
Bytes nearLossless(const Raster& cells) { return jpegLsEncoded(cells, 3); }
Bytes wavelet(const Raster& cells) { return jpeg2000Encoded(cells); }
Bytes signedWavelet(Raster cells) {
    cells.isSigned = true;
    return jpeg2000Encoded(cells);
}

TEST(Values, PrecisionOfTheStreamWinsUnlessItHoldsWholeCellsAndALossStaysWithinTheRange) {
    constexpr auto yes = true, no = false;
    const std::vector<int> four{0xF801, 0x0FFF, 0x07FF, 0x0800}, four12{0x801, 0xFFF, 0x7FF, 0x800};
    struct Case {
        const char* what;
        Bytes (*encode)(const Raster&);
        int precision, stored, high;
        bool isSigned;
        std::vector<int> cells;
        Values expected;
        int inColour = -1;
    };
    const auto sign = [](const Raster& cells) { return signedWavelet(cells); };
    const Case cases[] = {
        {"whole cells, overlay above", lossless, 16, 12, 11, no, four, {0x801, 0xFFF, 0x7FF, 0x800}},
        {"whole cells, signed", lossless, 16, 12, 11, yes, four, {-2047, -1, 2047, -2048}},
        {"whole cells, from the top", lossless, 16, 12, 15, no, four, {0xF80, 0xFF, 0x7F, 0x80}},
        {"as announced", lossless, 12, 12, 11, yes, four12, {-2047, -1, 2047, -2048}},
        {"more than announced", lossless, 12, 10, 9, no, four12, {0x801, 0xFFF, 0x7FF, 0x800}},
        {"more than announced, signed", lossless, 12, 10, 9, yes, four12, {-2047, -1, 2047, -2048}},
        {"less than announced", lossless, 12, 16, 15, yes, four12, {0x801, 0xFFF, 0x7FF, 0x800}},
        {"sign bits above", beyondPrecision, 12, 12, 11, yes, four, {-2047, -1, 2047, -2048}},
        {"beyond the precision", beyondPrecision, 12, 16, 15, no, four, {}},
        {"sign of the header only", wavelet, 13, 13, 12, yes, {0, 4095, 4096, 8191}, {0, 4095, -4096, -1}},
        {"sign of the stream only", sign, 13, 13, 12, no, {0, 4095, -4096, -1}, {0, 4095, 4096, 8191}},
        {"above, near-lossless", nearLossless, 16, 12, 11, no, {4102}, {4095}, 255},
        {"above, signed, near-lossless", nearLossless, 16, 12, 11, yes, {2054}, {2047}},
        {"below, signed, near-lossless", nearLossless, 16, 12, 11, yes, {0x10000 - 2054}, {-2048}},
        {"above, wavelet", wavelet, 16, 12, 11, no, {4098}, {4095}, 255},
        {"above, wavelet, from the top", wavelet, 16, 12, 14, no, {8 * 4095 + 9}, {4095}, 255},
        {"within, wavelet", wavelet, 16, 12, 11, no, {2048}, {2048}, 128},
        {"above, signed wavelet", sign, 16, 12, 11, yes, {2050}, {2047}},
        {"below, signed wavelet", sign, 16, 12, 11, yes, {-2050}, {-2048}},
        {"below, signed wavelet of unsigned values", sign, 16, 12, 11, no, {-3}, {0}, 0},
        {"above, signed wavelet of unsigned values", sign, 16, 12, 11, no, {4098}, {4095}, 255},
    };
    for (const Case& c : cases)
        for (const int components : {1, 3}) {
            if (components == 3 && c.inColour < 0) continue;
            Raster raster{32, 32, components, c.precision, {}};
            Values expected;
            for (std::size_t i = 0; i < raster.size(); ++i) {
                raster.samples.push_back(c.cells[i % c.cells.size()]);
                if (!c.expected.empty())
                    expected.push_back(components == 3 ? c.inColour : c.expected[i % c.cells.size()]);
            }
            auto format = formatOf(raster);
            format.bitsStored = c.stored;
            format.highBit = c.high;
            format.isSigned = c.isSigned;
            format.mayBeLossy = true;
            const auto frame = decoded(c.encode(raster), format, Compression::Jpeg);
            EXPECT_EQ(frame ? samplesOf(frame) : Values(), expected) << c.what;
        }
}

TEST(Values, BitsBesideThemAreHandedOutWhereThereAreSome) {
    const Raster cells = raster(32, 32, 1, 16);
    auto format = greyFormat(32, 32, 12);
    format.isSigned = true;
    const std::pair<Bytes, bool> cases[] = {
        {lossless(cells), true},
        {jpegLsEncoded(cells), true},
        {wavelet(cells), true},
        {rleEncoded(cells), true},
        {nearLossless(cells), false},
        {jpeg2000Encoded(cells, {.reversible = false}), false},
        {lossless(raster(32, 32, 1, 12)), false},
        {lossless(raster(32, 32, 3, 16)), false},
    };
    for (const auto& [stream, hasAll] : cases) {
        const auto frame = decodeFrame(std::as_bytes(std::span(stream)), format, Compression::Rle, false, 0,
                                       dicom::CellBits::All);
        EXPECT_EQ(frame ? samplesOf(frame) : Values(), hasAll ? shown(cells) : Values()) << stream.size();
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

TEST(Values, ColoursAreWhatTheStreamSaysAndOnlyThenWhatTheHeaderSays) {
    using enum JpegMaking::Marker;
    const auto rgb = Photometric::Rgb, full = Photometric::YbrFull, pairs = Photometric::YbrFull422;
    const auto rct = Photometric::YbrRct, ict = Photometric::YbrIct;
    const Raster picture = fields(24, 32), deep = fields(24, 32, 12);
    Raster ybr = picture;
    for (std::size_t i = 0; i < ybr.size(); ++i)
        ybr.samples[i] = std::array{143, 64, 190, 52, 211, 105}[i % 3 + (i / 3 % 32 < 16 ? 0 : 3)];
    const auto jpeg = [&](const JpegMaking& making, const Bytes& more = {}) {
        Bytes stream = jpegEncoded(picture, making);
        stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(placeOf(stream, 0xDA)), more.begin(),
                      more.end());
        return stream;
    };
    struct Case {
        const char* what;
        Bytes stream;
        Photometric photometric;
        int loss = 3;  ///< more where subsampling blurs the border
    };
    const Case cases[] = {
        {"JFIF under YBR_FULL_422", jpeg({}), pairs},
        {"JFIF under RGB", jpeg({}), rgb},
        {"Adobe's YCbCr under RGB", jpeg({.marker = Adobe}), rgb},
        {"Adobe's RGB under YBR_FULL", jpeg({.storedAsRgb = true, .marker = Adobe}), full},
        {"Adobe's RGB under RGB", jpeg({.storedAsRgb = true, .marker = Adobe}), rgb},
        {"Adobe's marker cut",
         jpeg({.marker = None}, {255, 238, 0, 13, 'A', 'd', 'o', 'b', 'e', 0, 1, 0, 0, 0, 0}), full},
        {"not quite JFIF", jpeg({.storedAsRgb = true, .marker = None}, {255, 0xE0, 0, 6, 'J', 'F', 'I', 'F'}),
         rgb},
        {"nothing but YBR_FULL", jpeg({.marker = None}), full},
        {"nothing but RGB", jpeg({.storedAsRgb = true, .marker = None}), rgb},
        {"named R, G, B", jpeg({.storedAsRgb = true, .marker = None, .names = "RGB"}), full},
        {"named nearly so", jpeg({.marker = None, .names = "RGC"}), full},
        {"named nearly so too", jpeg({.marker = None, .names = "RHB"}), full},
        {"subsampled under RGB", jpeg({.marker = None, .subsampled = true}), rgb, 110},
        {"subsampled", jpeg({.subsampled = true}), pairs, 110},
        {"progressive", jpeg({.progressive = true}), full},
        {"with restarts", jpeg({.restartInterval = 2}), full},
        {"12 bit", dcmtkLossy(deep, LossyProcess::Sequential, 100), full, 6},
        {"transformed", jpeg2000Encoded(picture, {.transformComponents = true}), rct, 0},
        {"transformed, named RGB", jpeg2000Encoded(picture, {.transformComponents = true}), rgb, 0},
        {"transformed, named YBR", jpeg2000Encoded(picture, {.transformComponents = true}), full, 0},
        {"not transformed, named so", wavelet(picture), rct, 0},
        {"not transformed, named otherwise", wavelet(picture), ict, 0},
        {"not transformed", wavelet(picture), rgb, 0},
        {"lossy", jpeg2000Encoded(picture, {.reversible = false, .transformComponents = true}), ict},
        {"YBR_FULL within", wavelet(ybr), full, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto frame = decoded(c.stream, colourFormat(24, 32, c.photometric), Compression::Jpeg);
        expectNear(samplesOf(frame), shown(picture), c.loss);
    }
}

TEST(Values, NumberOfComponentsFollowsTheHeader) {
    const auto grey =
        samplesOf(decoded(jpegEncoded(fields(16, 16)), greyFormat(16, 16, 8), Compression::Jpeg));
    ASSERT_EQ(grey.size(), 256u);
    EXPECT_NEAR(static_cast<double>(grey[0]), 0.299 * 230 + 0.587 * 120 + 0.114 * 30, 2);
    const Raster one = raster(9, 7, 1, 8);
    Values threefold;
    for (const auto value : one.samples) threefold.insert(threefold.end(), 3, value);
    EXPECT_EQ(samplesOf(decoded(lossless(one), colourFormat(9, 7), Compression::Jpeg)), threefold);
}

}  // namespace
}  // namespace cinedisc::test
