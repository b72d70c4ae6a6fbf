#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/BlankStreams.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <thread>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using Kind = dicom::DecodeError::Kind;
using Bytes = std::vector<std::uint8_t>;

struct Sample {
    std::string what;
    Bytes bytes;
    dicom::PixelFormat format;
    Compression compression;

    bool isJpeg() const { return compression == Compression::Jpeg; }
};

/// One stream of every kind.
const std::vector<Sample>& everyKind() {
    static const std::vector<Sample> all = [] {
        const Raster grey = raster(48, 40, 1, 8), grey12 = raster(48, 40, 1, 12), rgb = raster(48, 40, 3, 8);
        const auto format8 = formatOf(grey), format12 = formatOf(grey12), formatRgb = formatOf(rgb);
        const auto jpeg = Compression::Jpeg, ls = Compression::JpegLs, wavelet = Compression::Jpeg2000;
        const auto lossy12 = [&](LossyProcess process) { return dcmtkLossy(grey12, process, 90); };
        return std::vector<Sample>{
            {"RLE", rleEncoded(grey12), format12, Compression::Rle},
            {"lossless 8 bit", dcmtkLossless(grey, 1), format8, jpeg},
            {"lossless 12 bit", losslessEncoded(grey12, {4, 0, 6}), format12, jpeg},
            {"lossless colour", losslessEncoded(rgb, {7, 0, 0, false}), formatRgb, jpeg},
            {"baseline", jpegEncoded(grey), format8, jpeg},
            {"progressive", jpegEncoded(rgb, {.progressive = true}), formatRgb, jpeg},
            {"extended", lossy12(LossyProcess::Sequential), format12, jpeg},
            {"12 bit progressive", lossy12(LossyProcess::Progressive), format12, jpeg},
            {"JPEG-LS", jpegLsEncoded(grey12), format12, ls},
            {"JPEG-LS colour", jpegLsEncoded(rgb, 2, LsInterleave::Line), formatRgb, ls},
            {"JPEG 2000", jpeg2000Encoded(grey12, {.tileSize = 32}), format12, wavelet},
            {"JPEG 2000 colour",
             jpeg2000Encoded(rgb, {.reversible = false, .transformComponents = true, .inFileFormat = true}),
             formatRgb, wavelet},
        };
    }();
    return all;
}

TEST(FrameDecoder, BytesDecideWhateverTheTransferSyntaxSays) {
    for (const Sample& sample : everyKind()) {
        if (sample.compression == Compression::Rle) continue;
        const auto expected = samplesOf(decoded(sample.bytes, sample.format, sample.compression));
        for (const auto lie : {Compression::Rle, Compression::Jpeg, Compression::JpegLs,
                               Compression::Jpeg2000, Compression::Unsupported})
            EXPECT_EQ(samplesOf(decoded(sample.bytes, sample.format, lie)), expected) << sample.what;
    }
}

std::ptrdiff_t placeOf(const Bytes& stream, std::uint8_t code) {
    const std::uint8_t marker[] = {0xFF, code};
    return std::search(stream.begin(), stream.end(), marker, marker + 2) - stream.begin();
}

TEST(FrameDecoder, WhatDoesNotTouchThePictureIsOverlooked) {
    struct Case {
        const char* what;
        std::function<void(Bytes&)> change;
        bool inProgressive = true;
    };
    const Case cases[] = {
        {"zeros that fill the data up", [](Bytes& s) { s.insert(s.end() - 2, 40, 0); }},
        {"ones before a marker", [](Bytes& s) { s.insert(s.end() - 2, 5, 0xFF); }},
        {"comments and application data",
         [](Bytes& s) {
             const Bytes segments{0xFF, 0xFE, 0, 5, 0xFF, 0xD9, 7, 0xFF, 0xEA, 0, 2};
             s.insert(s.begin() + placeOf(s, 0xDA), segments.begin(), segments.end());
         }},
        {"bytes behind the end",
         [](Bytes& s) {
             s.insert(s.end(), {0, 0xFF, 0xD8, 7, 0xFF});
         }},
        {"no end marker", [](Bytes& s) { s.resize(s.size() - 2); }, false},
        {"coefficients 0 to 0 in the scan header",
         [](Bytes& s) {
             const auto scan = s.begin() + placeOf(s, 0xDA);
             if (auto& last = scan[6 + 2 * scan[4]]; last == 63) last = 0;
         },
         false},
    };
    for (const Sample& sample : everyKind()) {
        Bytes stream = sample.bytes;
        if (stream[0] != 0xFF || stream[1] != 0xD8) continue;
        while (stream.back() != 0xD9) stream.pop_back();
        const bool progressive = sample.what.ends_with("progressive");
        const auto expected = samplesOf(decoded(stream, sample.format, sample.compression));
        for (const Case& c : cases) {
            if (progressive && !c.inProgressive) continue;
            SCOPED_TRACE(testing::Message() << sample.what << ", " << c.what);
            Bytes changed = stream;
            c.change(changed);
            EXPECT_EQ(samplesOf(decoded(changed, sample.format, sample.compression)), expected);
        }
    }
}

TEST(FrameDecoder, EveryCutAndOtherSizesAreErrors) {
    for (const Sample& sample : everyKind()) {
        for (std::size_t length = 0; length + 8 < sample.bytes.size(); length += 7) {
            const Bytes start(sample.bytes.begin(),
                              sample.bytes.begin() + static_cast<std::ptrdiff_t>(length));
            const auto frame = decoded(start, sample.format, sample.compression);
            ASSERT_FALSE(frame.ok()) << sample.what << " at " << length;
            if (sample.isJpeg() && length > 2) {
                ASSERT_EQ(frame.error().kind, Kind::CutOff) << sample.what << " at " << length;
            }
        }
        auto larger = sample.format;
        ++larger.rows;
        EXPECT_FALSE(decoded(sample.bytes, larger, sample.compression).ok()) << sample.what;
    }
}

TEST(FrameDecoder, ThreadsDecodeAtTheSameTime) {
    std::vector<std::vector<std::int64_t>> expected;
    for (const Sample& sample : everyKind())
        expected.push_back(samplesOf(decoded(sample.bytes, sample.format, sample.compression)));
    std::vector<std::thread> threads;
    std::array<bool, 4> same{};
    for (std::size_t t = 0; t < same.size(); ++t)
        threads.emplace_back([&, t] {
            same[t] = true;
            for (std::size_t i = t * 3; i < t * 3 + expected.size(); ++i) {
                const Sample& sample = everyKind()[i % expected.size()];
                const auto frame = decoded(sample.bytes, sample.format, sample.compression);
                same[t] = same[t] && frame.ok() && samplesOf(frame) == expected[i % expected.size()];
            }
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(same, (std::array<bool, 4>{true, true, true, true}));
}

/// Whatever the bytes are, the answer is a frame of the right size or an error that says something.
void expectSaneAnswer(const Bytes& bytes, const dicom::PixelFormat& format, Compression compression) {
    const auto frame = decoded(bytes, format, compression);
    if (!frame) {
        EXPECT_FALSE(frame.error().message.empty());
        return;
    }
    const std::size_t samples = std::visit([](const auto& v) { return v.size(); }, frame.value().samples);
    EXPECT_EQ(samples, frame.value().pixelCount() * static_cast<std::size_t>(format.samplesPerPixel));
}

TEST(FrameDecoder, DamagedBytesAndOtherHeadersNeverLeadAstray) {
    std::mt19937 engine(99);
    for (const Sample& sample : everyKind()) {
        SCOPED_TRACE(sample.what);
        const std::size_t size = sample.bytes.size();
        for (int round = 0; round < 250; ++round) {
            Bytes bytes = sample.bytes;
            // Headers are short and matter most, so that half of the damage is done there.
            const std::size_t reach = round % 2 ? size : std::min<std::size_t>(size, 120);
            for (unsigned hits = 1 + engine() % 4; hits > 0; --hits) {
                const std::size_t at = engine() % reach;
                static constexpr std::uint8_t likely[] = {0, 1, 0x7F, 0x80, 0xFF};
                bytes[at] = engine() % 3 ? static_cast<std::uint8_t>(engine()) : likely[engine() % 5];
            }
            if (round % 5 == 0) bytes.resize(engine() % size);
            if (round % 7 == 0)
                bytes.insert(bytes.end(), bytes.begin(),
                             bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2));
            expectSaneAnswer(bytes, sample.format, sample.compression);
        }
        for (const int bits : {1, 8, 16, 32})
            for (const int samplesPerPixel : {1, 3}) {
                auto other = sample.format;
                other.bitsAllocated = other.bitsStored = bits;
                other.highBit = bits - 1;
                other.samplesPerPixel = samplesPerPixel;
                expectSaneAnswer(sample.bytes, other, sample.compression);
            }
    }
}

TEST(FrameDecoder, PrecisionOfTheStreamWinsUnlessItHoldsWholeCells) {
    struct Case {
        const char* what;
        int precision, stored, high;
        bool isSigned;
        std::vector<std::int64_t> expected;
    };
    const Case cases[] = {
        {"whole cells, overlay above", 16, 12, 11, false, {0x801, 0xFFF, 0x7FF, 0x800}},
        {"whole cells, signed", 16, 12, 11, true, {-2047, -1, 2047, -2048}},
        {"whole cells, from the top", 16, 12, 15, false, {0xF80, 0xFF, 0x7F, 0x80}},
        {"as announced", 12, 12, 11, true, {-2047, -1, 2047, -2048}},
        {"more than announced", 12, 10, 9, false, {0x801, 0xFFF, 0x7FF, 0x800}},
        {"more than announced, signed", 12, 10, 9, true, {-2047, -1, 2047, -2048}},
        {"less than announced, signed", 12, 16, 15, true, {0x801, 0xFFF, 0x7FF, 0x800}},
    };
    for (const Case& c : cases) {
        Raster cells{2, 2, 1, c.precision, {0xF801, 0x0FFF, 0x07FF, 0x0800}};
        for (auto& sample : cells.samples) sample &= (1 << c.precision) - 1;
        auto format = greyFormat(2, 2, 16);
        format.bitsStored = c.stored;
        format.highBit = c.high;
        format.isSigned = c.isSigned;
        EXPECT_EQ(samplesOf(decoded(losslessEncoded(cells), format, Compression::Jpeg)), c.expected)
            << c.what;
    }
}

TEST(FrameDecoder, ValuesThatALossCarriesBeyondTheirRangeBecomeItsEnd) {
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
                      std::vector<std::int64_t>(cells.size(), expected))
                << c.what;
        }
}

TEST(FrameDecoder, HandsOutTheBitsBesideTheValues) {
    const Raster cells = raster(32, 32, 1, 16);
    auto format = greyFormat(32, 32, 12);
    format.isSigned = true;
    struct Case {
        Bytes stream;
        Compression compression;
        bool hasAll;
    };
    const Case cases[] = {
        {losslessEncoded(cells), Compression::Jpeg, true},
        {jpegLsEncoded(cells), Compression::JpegLs, true},
        {jpeg2000Encoded(cells), Compression::Jpeg2000, true},
        {rleEncoded(cells), Compression::Rle, true},
        // Lossy streams, and those of another precision, have no such bits.
        {jpegLsEncoded(cells, 3), Compression::JpegLs, false},
        {jpeg2000Encoded(cells, {.reversible = false}), Compression::Jpeg2000, false},
        {losslessEncoded(raster(32, 32, 1, 12)), Compression::Jpeg, false},
    };
    for (const Case& c : cases) {
        const auto frame = decodeFrame(std::as_bytes(std::span(c.stream)), format, c.compression, false, 0,
                                       dicom::CellBits::All);
        ASSERT_EQ(frame.ok(), c.hasAll);
        if (c.hasAll) {
            EXPECT_EQ(samplesOf(frame), shown(cells));
        }
    }
}

TEST(FrameDecoder, WhatIsNoStreamIsNamed) {
    const auto format = greyFormat(8, 8, 8);
    struct Case {
        const char* what;
        Bytes bytes;
        Compression compression;
        Kind kind;
    };
    const Case cases[] = {
        {"nothing", {}, Compression::Jpeg, Kind::CutOff},
        {"noise", {1, 2, 3, 4, 5, 6, 7, 8}, Compression::Jpeg, Kind::Broken},
        {"unknown compression", {1, 2, 3, 4}, Compression::Unsupported, Kind::Unsupported},
        {"four components",
         {0xFF, 0xD8, 0xFF, 0xC0, 0, 20,   8, 0, 8,    0, 8,    4,    1, 0x11,
          0,    2,    0x11, 0,    3, 0x11, 0, 4, 0x11, 0, 0xFF, 0xDA, 0, 2},
         Compression::Jpeg,
         Kind::Unsupported},
    };
    for (const Case& c : cases) {
        const auto frame = decoded(c.bytes, format, c.compression);
        ASSERT_FALSE(frame.ok()) << c.what;
        EXPECT_EQ(frame.error().kind, c.kind) << c.what << ": " << frame.error().message;
    }
}

TEST(FrameDecoder, HeadersThatMakeNoSenseAreErrors) {
    const auto jpeg = Compression::Jpeg, wavelet = Compression::Jpeg2000;
    struct Change {
        const char* what;
        Compression compression;
        std::uint8_t marker;
        std::ptrdiff_t at;
        std::uint8_t value;
        Kind kind = Kind::Broken;
    };
    const Change changes[] = {
        {"other size than the header's", jpeg, 0xC3, 6, 31},
        {"arithmetic coding", jpeg, 0xC3, 1, 0xC9, Kind::Unsupported},
        {"no precision", jpeg, 0xC3, 4, 1},
        {"too much precision", jpeg, 0xC3, 4, 17},
        {"no components", jpeg, 0xC3, 9, 0},
        {"table of another scan", jpeg, 0xDA, 6, 0x10},
        {"component that is not there", jpeg, 0xDA, 5, 9},
        {"no predictor", jpeg, 0xDA, 7, 0},
        {"predictor beyond the last", jpeg, 0xDA, 7, 8},
        {"everything shifted away", jpeg, 0xDA, 9, 8},
        {"codes that are no prefix codes", jpeg, 0xC4, 5, 3},
        {"symbol beyond 16", jpeg, 0xC4, 22, 17},
        {"restart within a row", jpeg, 0xDD, 5, 0x91},
        {"restart markers out of order", jpeg, 0xD1, 1, 0xD2},
        {"components", wavelet, 0x51, 39, 4, Kind::Unsupported},
        {"no step from sample to sample", wavelet, 0x51, 41, 0},
        {"levels", wavelet, 0x52, 9, 33},
        {"code blocks too wide", wavelet, 0x52, 10, 9},
        {"code blocks too high", wavelet, 0x52, 11, 9},
        {"precincts of nothing across", wavelet, 0x52, 15, 0x50},
        {"precincts of nothing down", wavelet, 0x52, 16, 0x05},
        {"parameters shorter than their levels", wavelet, 0x52, 3, 15},
        {"a marker nobody knows", wavelet, 0x52, 1, 0x30, Kind::Unsupported},
        {"no marker at all", wavelet, 0x52, 0, 0},
        {"tile part shorter than its header", wavelet, 0x90, 9, 13},
    };
    const Bytes lossless = losslessEncoded(raster(64, 64, 1, 8), {.restartRows = 10}),
                blank = blankJpeg2000({.levels = 3, .precinctBits = 5});
    const auto format = greyFormat(64, 64, 8);
    for (const Change& change : changes) {
        const Bytes& good = change.compression == jpeg ? lossless : blank;
        ASSERT_TRUE(decoded(good, format, change.compression).ok());
        Bytes bad = good;
        bad[static_cast<std::size_t>(placeOf(good, change.marker) + change.at)] = change.value;
        const auto frame = decoded(bad, format, change.compression);
        ASSERT_FALSE(frame.ok()) << change.what;
        EXPECT_EQ(frame.error().kind, change.kind) << change.what << ": " << frame.error().message;
    }
    Bytes halved = losslessEncoded(raster(64, 64, 1, 8, Texture::Noise));
    halved[8] = 32;  // columns in the frame header: the data belong to more pixels
    EXPECT_FALSE(decoded(halved, greyFormat(64, 32, 8), jpeg).ok());
}

}  // namespace
}  // namespace cinedisc::test
