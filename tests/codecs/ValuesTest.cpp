#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <random>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;
using Bytes = std::vector<std::uint8_t>;
using Values = std::vector<std::int64_t>;
using Random = std::function<int(int, int)>;  ///< from the first number to the last

/// Codes a raster, which it may change before, in one of many ways; `loss` is how far samples may get.
using Encode = std::function<Bytes(Raster&, const Random&, int& loss)>;

Bytes lossless(Raster& raster, const Random& random, int&) {
    const bool grey = raster.components == 1;
    const LosslessMaking making{random(1, 7), random(0, 1) * random(0, std::min(3, raster.bits - 2)),
                                random(0, 1) == 0};
    for (auto& sample : raster.samples) sample = sample >> making.pointTransform << making.pointTransform;
    Bytes stream = losslessEncoded(raster, making);
    if (const int times = random(0, 1) * random(2, 20); grey && times > 0) {
        stream = repeated(stream, times);
        const auto once = raster.samples;
        for (int i = 1; i < times; ++i) raster.samples.insert(raster.samples.end(), once.begin(), once.end());
        raster.rows *= times;
    }
    // A marker behind the scan may tell the number of rows.
    if (random(0, 3) == 0) stream[placeOf(stream, 0xC3) + 5] = stream[placeOf(stream, 0xC3) + 6] = 0;
    return stream;
}

Bytes jpegLs(Raster& raster, const Random& random, int& loss) {
    // The library's encoder writes beyond its memory when noise gets no shorter.
    for (std::size_t i = 0; i < raster.size(); ++i)
        raster.samples[i] = raster.samples[i - i % (i < raster.size() / 2 ? 300 : 3)];
    // Of fewer bits the library has thresholds of its own.
    if (raster.bits >= 8) loss = random(0, 1) * random(0, 10);
    return jpegLsEncoded(
        raster, loss, raster.components == 1 ? LsInterleave::None : static_cast<LsInterleave>(random(0, 2)));
}

Bytes jpeg2000(Raster& raster, const Random& random, int&) {
    raster.isSigned = raster.components == 1 && raster.bits > 1 && random(0, 1);
    if (raster.isSigned)
        for (auto& sample : raster.samples) sample -= 1 << (raster.bits - 1);
    Jpeg2000Making making;
    making.transformComponents = raster.components == 3 && random(0, 1);
    making.inFileFormat = random(0, 1);
    // Even: OpenJPEG loses a bit of tiles of one column or row that begin at an odd one.
    making.tileSize = 18 * random(0, 1);
    making.layers = random(1, 3);
    // Nor has it enough memory for noise of single bits in small blocks.
    making.block = raster.bits == 1 ? 64 : 16 << random(0, 2);
    return jpeg2000Encoded(raster, making);
}

/// Whether two pictures differ by no more than a loss.
void expectNear(const Values& found, const Values& expected, int loss) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) ASSERT_NEAR(found[i], expected[i], loss) << i;
}

TEST(RoundTrip, RandomPicturesComeBackWhateverTheCoderAndTheTransferSyntax) {
    struct Case {
        const char* what;
        Compression compression;
        std::vector<int> bits, colourBits;
        int smallest;  ///< number of rows and columns
        Encode encode;
    };
    const std::vector<int> all{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const auto rle = [](Raster& raster, const Random&, int&) { return rleEncoded(raster); };
    const Case cases[] = {
        {"lossless", Compression::Jpeg, all, {8, 12}, 1, lossless},
        {"JPEG-LS", Compression::JpegLs, all, all, 9, jpegLs},
        {"JPEG 2000", Compression::Jpeg2000, {1, 2, 8, 10, 12, 16}, {8, 12}, 16, jpeg2000},
        {"RLE", Compression::Rle, {8, 16, 32}, {8, 16, 32}, 1, rle},
    };
    for (const Case& c : cases) {
        std::mt19937 engine(5);
        const auto random = [&](int first, int last) {
            return first + static_cast<int>(engine() % static_cast<unsigned>(last - first + 1));
        };
        for (unsigned round = 0; round < 400; ++round) {
            const auto& depths = round % 3 ? c.bits : c.colourBits;
            const int bits = depths[engine() % depths.size()], largest = round % 2 ? 15 : 70;
            Raster picture = raster(random(c.smallest, largest + c.smallest), random(c.smallest, 2 * largest),
                                    round % 3 ? 1 : 3, bits, static_cast<Texture>(random(0, 2)), round);
            int loss = 0;
            const Bytes stream = c.encode(picture, random, loss);
            SCOPED_TRACE(testing::Message() << c.what << ", round " << round << ", " << picture.rows << " x "
                                            << picture.columns << ", " << bits << " bit");
            const auto declared =
                c.compression == Compression::Rle ? Compression::Rle : static_cast<Compression>(random(1, 5));
            expectNear(samplesOf(decoded(stream, formatOf(picture), declared)), shown(picture), loss);
        }
    }
}

TEST(RoundTrip, LosslessCodesAndDifferencesOfAllLengths) {
    Raster picture = raster(400, 500, 1, 16, Texture::Noise);
    std::mt19937 engine(7);
    // The library gives differences that are half as frequent codes that are a bit longer.
    for (std::size_t i = 1; i < picture.size(); ++i) {
        const int bits = std::countl_zero(static_cast<std::uint32_t>(engine())) % 17;
        picture.samples[i] = (picture.samples[i - 1] + (1 << bits) - (engine() % 2 << bits >> 1)) & 0xFFFF;
    }
    for (int predictor = 1; predictor <= 7; ++predictor)
        EXPECT_EQ(
            samplesOf(decoded(losslessEncoded(picture, {predictor}), formatOf(picture), Compression::Jpeg)),
            shown(picture));
}

Bytes exact(const Raster& cells) { return losslessEncoded(cells); }
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
        std::function<Bytes(const Raster&)> encode;
        int precision, stored, high;
        bool isSigned;
        std::vector<int> cells;
        Values expected;
        int inColour = -1;
    };
    // Whole cells with an overlay above, signed, from the top; what is announced, more and less of it; sign
    // bits above; signs of the header or the stream only; losses above and below the range and within.
    const Case cases[] = {
        {exact, 16, 12, 11, no, four, {0x801, 0xFFF, 0x7FF, 0x800}},
        {exact, 16, 12, 11, yes, four, {-2047, -1, 2047, -2048}},
        {exact, 16, 12, 15, no, four, {0xF80, 0xFF, 0x7F, 0x80}},
        {exact, 12, 12, 11, yes, four12, {-2047, -1, 2047, -2048}},
        {exact, 12, 10, 9, no, four12, {0x801, 0xFFF, 0x7FF, 0x800}},
        {exact, 12, 10, 9, yes, four12, {-2047, -1, 2047, -2048}},
        {exact, 12, 16, 15, yes, four12, {0x801, 0xFFF, 0x7FF, 0x800}},
        {beyondPrecision, 12, 12, 11, yes, four, {-2047, -1, 2047, -2048}},
        {beyondPrecision, 12, 16, 15, no, four, {}},
        {wavelet, 13, 13, 12, yes, {0, 4095, 4096, 8191}, {0, 4095, -4096, -1}},
        {signedWavelet, 13, 13, 12, no, {0, 4095, -4096, -1}, {0, 4095, 4096, 8191}},
        {nearLossless, 16, 12, 11, no, {4102}, {4095}, 255},
        {nearLossless, 16, 12, 11, yes, {2054}, {2047}},
        {nearLossless, 16, 12, 11, yes, {0x10000 - 2054}, {-2048}},
        {wavelet, 16, 12, 11, no, {4098}, {4095}, 255},
        {wavelet, 16, 12, 14, no, {8 * 4095 + 9}, {4095}, 255},
        {wavelet, 16, 12, 11, no, {2048}, {2048}, 128},
        {signedWavelet, 16, 12, 11, yes, {2050}, {2047}},
        {signedWavelet, 16, 12, 11, yes, {-2050}, {-2048}},
        {signedWavelet, 16, 12, 11, no, {-3}, {0}, 0},
        {signedWavelet, 16, 12, 11, no, {4098}, {4095}, 255},
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
            EXPECT_EQ(frame ? samplesOf(frame) : Values(), expected) << &c - cases;
        }
}

TEST(Values, BitsBesideThemAreHandedOutWhereThereAreSome) {
    const Raster cells = raster(32, 32, 1, 16);
    auto format = greyFormat(32, 32, 12);
    format.isSigned = true;
    const std::pair<Bytes, bool> cases[] = {
        {exact(cells), true},
        {jpegLsEncoded(cells), true},
        {wavelet(cells), true},
        {rleEncoded(cells), true},
        {nearLossless(cells), false},
        {jpeg2000Encoded(cells, {.reversible = false}), false},
        {exact(raster(32, 32, 1, 12)), false},
        {exact(raster(32, 32, 3, 16)), false},
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
    const auto rgb = Photometric::Rgb, full = Photometric::YbrFull, pairs = Photometric::YbrFull422;
    const auto rct = Photometric::YbrRct, ict = Photometric::YbrIct;
    const Raster picture = fields(24, 32), deep = fields(24, 32, 12);
    Raster ybr = picture;
    for (std::size_t i = 0; i < ybr.size(); ++i)
        ybr.samples[i] = std::array{143, 64, 190, 52, 211, 105}[i % 3 + (i / 3 % 32 < 16 ? 0 : 3)];
    // Without the library's own markers; the components' names as they are or others.
    const auto jpeg = [&](JpegColours colours, const Bytes& marker, const char* names = nullptr) {
        Bytes stream = dcmtkLossy(picture, LossyProcess::Baseline, 100, colours);
        for (const std::uint8_t code : {0xE0, 0xEE})
            if (const auto at = placeOf(stream, code); at < stream.size()) {
                const auto from = stream.begin() + static_cast<std::ptrdiff_t>(at);
                stream.erase(from, from + 2 + (from[2] << 8) + from[3]);
            }
        for (std::size_t i = 0; i < 3 && names; ++i)
            stream[placeOf(stream, 0xC0) + 10 + 3 * i] = stream[placeOf(stream, 0xDA) + 5 + 2 * i] =
                static_cast<std::uint8_t>(names[i]);
        stream.insert(stream.begin() + 2, marker.begin(), marker.end());
        return stream;
    };
    using enum JpegColours;
    const Bytes none, jfif{255, 0xE0, 0, 16, 'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0};
    const Bytes adobeRgb{255, 238, 0, 14, 'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, 0};
    const Bytes adobe{255, 238, 0, 14, 'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, 1};
    const Bytes cut{255, 238, 0, 13, 'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0};
    const Bytes transformed = jpeg2000Encoded(picture, {.transformComponents = true});
    struct Case {
        Bytes stream;
        std::vector<Photometric> photometrics;
        int loss = 3;  ///< more where subsampling blurs the border
    };
    const Case cases[] = {
        {jpeg(Ycbcr, jfif), {full, pairs, rgb}},
        {jpeg(Ycbcr, adobe), {full, rgb}},
        {jpeg(Rgb, adobeRgb), {full, rgb}},
        {jpeg(Ycbcr, cut), {full}},
        {jpeg(Rgb, {255, 0xE0, 0, 6, 'J', 'F', 'I', 'F'}), {rgb}},
        {jpeg(Ycbcr, none), {full}},
        {jpeg(Rgb, none), {rgb}},
        // Their names tell the colours, unless they only nearly do.
        {jpeg(Rgb, none, "RGB"), {full}},
        {jpeg(Ycbcr, none, "RGC"), {full}},
        {jpeg(Ycbcr, none, "RHB"), {full}},
        {jpeg(Subsampled, none), {rgb}, 110},
        {jpeg(Subsampled, jfif), {pairs}, 110},
        {dcmtkLossy(picture, LossyProcess::Progressive, 100), {full}},
        {dcmtkLossy(deep, LossyProcess::Sequential, 100), {full}, 6},
        {transformed, {rct, rgb, full}, 0},
        {wavelet(picture), {rct, ict, rgb}, 0},
        {jpeg2000Encoded(picture, {.reversible = false, .transformComponents = true}), {ict}},
        {wavelet(ybr), {full}, 2},
    };
    for (const Case& c : cases)
        for (const auto photometric : c.photometrics) {
            SCOPED_TRACE(&c - cases);
            const auto frame = decoded(c.stream, colourFormat(24, 32, photometric), Compression::Jpeg);
            expectNear(samplesOf(frame), shown(picture), c.loss);
        }
}

TEST(Values, NativeColourBecomesEightBitTriples) {
    const auto rgb = Photometric::Rgb, ybr = Photometric::YbrFull, pairs = Photometric::YbrFull422;
    const auto partial = Photometric::YbrPartial422, transform = Photometric::YbrRct;
    struct Case {
        Photometric photometric;
        Bytes bytes;
        Values expected;
        int rows = 1;
        bool planar = false;
        int allocated = 8, stored = 8;
    };
    // Triples and planes, of more bits and fewer; pairs, in an odd row, expanded already; a name of a
    // transform.
    const Case cases[] = {
        {rgb, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}},
        {rgb, {1, 4, 2, 5, 3, 6}, {1, 2, 3, 4, 5, 6}, 1, true},
        {rgb, {0xFF, 0x12, 0, 0x34, 0xFF, 0xFF}, {0x12, 0x34, 0xFF}, 1, false, 16, 16},
        {rgb, {0xF0, 0x0F, 0x80, 0, 0x1F, 0}, {255, 8, 1}, 1, false, 16, 12},
        {rgb, {31, 0, 16}, {255, 0, 131}, 1, false, 8, 5},
        {ybr, {76, 85, 255, 255, 255, 255}, {254, 0, 0, 255, 121, 255}},
        {ybr, {76, 255, 85, 128, 255, 128}, {254, 0, 0, 255, 255, 255}, 1, true},
        {pairs, {76, 255, 128, 128}, {76, 76, 76, 255, 255, 255}},
        {pairs, {1, 2, 128, 128, 3, 0, 128, 128}, {1, 1, 1, 2, 2, 2, 3, 3, 3}},
        {pairs,
         {1, 2, 128, 128, 3, 0, 128, 128, 4, 5, 128, 128, 6, 0, 128, 128},
         {1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5, 5, 5, 6, 6, 6},
         2},
        {pairs, {9, 128, 128, 7, 128, 128}, {9, 9, 9, 7, 7, 7}},
        {partial, {16, 235, 128, 128}, {0, 0, 0, 255, 255, 255}},
        {transform, {1, 2, 3}, {1, 2, 3}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        auto format = colourFormat(c.rows, static_cast<int>(c.expected.size()) / 3 / c.rows, c.photometric);
        format.planar = c.planar;
        format.bitsAllocated = c.allocated;
        format.bitsStored = c.stored;
        format.highBit = c.stored - 1;
        const auto frame = decoded(c.bytes, format, Compression::None);
        EXPECT_EQ(samplesOf(frame), c.expected);
        EXPECT_EQ(frame.value().samplesPerPixel, 3);
    }
}

TEST(Values, SingleBitsComeFromTheBytesOfTheirPlane) {
    for (const int components : {1, 3}) {
        const Raster packed = raster(1, 15, components, 8, Texture::Noise);
        auto format = components == 3 ? colourFormat(9, 13) : greyFormat(9, 13, 8);
        format.bitsAllocated = format.bitsStored = 1;
        format.highBit = 0;
        Values expected;
        for (int i = 0; i < 9 * 13 * components; ++i) {
            const int pixel = i / components, byte = pixel / 8 * components + i % components;
            const int bit = packed.samples[static_cast<std::size_t>(byte)] >> pixel % 8 & 1;
            expected.push_back(components == 3 ? bit * 255 : bit);
        }
        EXPECT_EQ(samplesOf(decoded(rleEncoded(packed), format, Compression::Rle)), expected);
    }
}

TEST(Values, NumberOfComponentsFollowsTheHeader) {
    const auto grey = samplesOf(decoded(dcmtkLossy(fields(16, 16), LossyProcess::Baseline, 100),
                                        greyFormat(16, 16, 8), Compression::Jpeg));
    EXPECT_NEAR(static_cast<double>(grey.at(255)), 0.299 * 20 + 0.587 * 40 + 0.114 * 200, 2);
    const Raster one = raster(9, 7, 1, 8);
    Values threefold;
    for (const auto value : one.samples) threefold.insert(threefold.end(), 3, value);
    EXPECT_EQ(samplesOf(decoded(exact(one), colourFormat(9, 7), Compression::Jpeg)), threefold);
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
        Jpeg2000Making making;
        int leastSide = 16, halvings = 2;
        int headerBits = 12, codedBits = 12;
        bool headerSigned = false, codedSigned = false;
        Photometric photometric = Photometric::Monochrome2;
        int components = 1;
    };
    const Case cases[] = {
        {{}},
        {{.reversible = false}},
        {{}, 16, 2, 12, 12, true, true},
        {{.inFileFormat = true, .tileSize = 40}},
        {{}, 16, 2, 12, 16},  // whole cells
        {{}, 33, 1},
        {{}, 4},  // smaller than there is
        {{.transformComponents = true}, 16, 2, 8, 8, false, false, Photometric::YbrRct, 3},
        {{.levels = 0}, 16, 0},
        {{}, 50, 0},
        {{}, 16, 0, 8, 8, false, false, Photometric::PaletteColor},
        {{}, 16, 0, 12, 12, true},  // signs in unsigned samples
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
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
                        2 + top / (c.making.reversible ? 100 : 50));
        }
        stream.resize(stream.size() / 2);
        EXPECT_FALSE(dicom::decodeCoarseFrame(std::as_bytes(std::span(stream)), format, c.leastSide));
    }
}

}  // namespace
}  // namespace cinedisc::test
