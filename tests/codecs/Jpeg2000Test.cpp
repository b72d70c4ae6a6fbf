#include "dicom/codecs/FrameDecoder.h"
#include "dicom/codecs/Jpeg2000Decoder.h"
#include "dicom/codecs/Jpeg2000Header.h"
#include "dicom/codecs/JpegBounds.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;
using Bytes = std::vector<std::uint8_t>;
using Kind = dicom::DecodeError::Kind;

/// A picture of a single grey.
Raster blank(int rows, int columns, int components = 1) {
    Raster picture{rows, columns, components, 8, {}};
    picture.samples.assign(picture.size(), 128);
    return picture;
}

/// That a stream is read with as many bytes as it must have for its packets or most of its code blocks, and
/// with one less is not.
void expectBound(const Raster& picture, const Jpeg2000Making& making, int blocks) {
    Bytes stream = jpeg2000Encoded(picture, making);
    int tiles = 0;
    for (std::size_t i = 1; i < stream.size(); ++i) tiles += stream[i - 1] == 0xFF && stream[i] == 0x90;
    // OpenJPEG writes a packet without content as one byte, and in a single grey none has content.
    const int packets = static_cast<int>(stream.size() - placeOf(stream, 0x90)) - 14 * tiles - 2;
    const int enough = std::max(packets, blocks - picture.rows * picture.columns / 256);
    for (const int less : {0, 1}) {
        stream.resize(static_cast<std::size_t>(enough - less));
        EXPECT_EQ(dicom::codecs::readJpeg2000Header(stream, formatOf(picture)).ok(), less == 0)
            << tiles << " tiles, " << enough << " bytes";
    }
}

TEST(WorkBounds, AWaveletMustHaveAByteForEachPacketAndForMostCodeBlocks) {
    std::mt19937 engine(21);
    const auto random = [&](int from, int to) {
        return from + static_cast<int>(engine() % static_cast<unsigned>(to - from + 1));
    };
    for (int round = 0; round < 40; ++round) {
        const bool isColour = random(0, 1);
        const Jpeg2000Making making{.tileSize = isColour ? 0 : random(0, 1) * random(120, 160),
                                    .subsampled = isColour,
                                    .levels = random(0, 4),
                                    .layers = random(3, 5),
                                    .precinct = 16,
                                    .offset = random(0, 40)};
        expectBound(blank(random(200, 300), random(200, 300), isColour ? 3 : 1), making, 0);
    }
    const std::pair<Jpeg2000Making, int> ofBlocks[] = {{{.levels = 0, .block = 4}, 3213},
                                                       {{.levels = 3, .block = 8}, 856},
                                                       {{.levels = 2, .precinct = 32, .block = 4}, 3328},
                                                       {{.levels = 2, .precinct = 8, .block = 8}, 3176},
                                                       {{.tileSize = 128, .levels = 1, .block = 8}, 832}};
    for (const auto& [making, blocks] : ofBlocks) expectBound(blank(250, 203), making, blocks);
    for (const auto& [side, tile] : {std::pair(3200, 16), {16000, 16000}}) {
        Bytes stream = jpeg2000Encoded(blank(64, 64), {.levels = 5});
        for (const auto& [at, number] : {std::pair(6, side), {10, side}, {22, tile}, {26, tile}})
            for (int byte = 0; byte < 4; ++byte)
                stream[placeOf(stream, 0x51) + std::size_t(at + byte)] =
                    std::uint8_t(number >> (24 - 8 * byte));
        stream.resize(14 * 200 * 200 * 8);
        const auto frame = decoded(stream, greyFormat(side, side, 8), Compression::Jpeg2000);
        EXPECT_EQ(frame ? Kind::NotDicom : frame.error().kind, Kind::TooLarge);
    }
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

/// A progressive stream of a single grey, of which the first scan comes so many times.
Bytes progressive(int scans) {
    const Bytes one = dcmtkLossy(blank(16, 16), LossyProcess::Progressive, 90);
    const std::size_t from = placeOf(one, 0xDA), to = from + placeOf(std::span(one).subspan(from), 0xC4);
    Bytes stream(&one[0], &one[from]);
    for (; scans > 0; --scans) stream.insert(stream.end(), &one[from], &one[to]);
    stream.insert(stream.end(), {0xFF, 0xD9});
    return stream;
}

TEST(WorkBounds, MoreScansThanAPictureCanNeedAreNotDecoded) {
    const auto format = greyFormat(16, 16, 8);
    EXPECT_EQ(samplesOf(decoded(progressive(100), format, Compression::Jpeg)),
              std::vector<std::int64_t>(256, 128));
    EXPECT_EQ(decoded(progressive(101), format, Compression::Jpeg).error().kind, Kind::Broken);

    using namespace dicom::codecs::marker;
    const std::tuple<int, std::uint8_t, int, int, int, std::optional<Kind>> rows[] = {
        {8, sof2, 1, 8192, 64, {}},  // 2 ^ 26 blocks
        {8, sof2, 1, 8193, 64, Kind::Broken},
        {8, sof2, 1, 11500, 2, {}},  // coefficients of 2 bytes each
        {8, sof2, 1, 12000, 2, Kind::TooLarge},
        {12, sof2, 1, 10000, 2, {}},
        {12, sof2, 1, 10500, 2, Kind::TooLarge},
        {8, sof0, 1, 16000, 2, {}},  // the first scan holds all
        {8, sof0, 3, 7000, 2, Kind::TooLarge},
        {12, sof1, 1, 16000, 1, Kind::TooLarge}};
    for (const auto& [precision, process, components, side, scans, error] : rows) {
        const Bytes stream = progressive(scans);
        dicom::codecs::JpegHeader header = dicom::codecs::readJpegHeader(stream).value();
        header.precision = precision;
        header.startOfFrame = process;
        header.componentCount = components;
        const auto found = dicom::codecs::jpegWorkError(stream, header, greyFormat(side, side, 8));
        EXPECT_EQ(found ? std::optional(found->kind) : std::nullopt, error) << side;
    }
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
                        2 + top / (c.making.reversible ? 100 : 50))
                << x << "," << y;
        }
        stream.resize(stream.size() / 2);
        EXPECT_FALSE(dicom::decodeCoarseFrame(std::as_bytes(std::span(stream)), format, c.leastSide));
    }
}

}  // namespace
}  // namespace cinedisc::test
