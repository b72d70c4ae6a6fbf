#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/DcmtkJpeg.h"
#include "tests/codecs/Encoders.h"
#include "tests/codecs/LosslessEncoder.h"
#include "tests/codecs/Pictures.h"
#include "tests/codecs/RleEncoder.h"

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
    const char* what;
    Bytes bytes;
    dicom::PixelFormat format;
    Compression compression;
};

/// One stream of every kind.
const std::vector<Sample>& everyKind() {
    static const std::vector<Sample> all = [] {
        constexpr int rows = 48, columns = 40;
        const auto grey8 = picture(rows * columns, 8, Texture::Smooth),
                   grey12 = picture(rows * columns, 12, Texture::Smooth);
        const auto colour = picture(rows * columns * 3, 8, Texture::Smooth);
        const Bytes colourBytes(colour.begin(), colour.end()), greyBytes(grey8.begin(), grey8.end());
        const std::vector<std::int32_t> ints12(grey12.begin(), grey12.end()),
            colourInts(colour.begin(), colour.end());
        const std::vector<std::uint32_t> words12(grey12.begin(), grey12.end());
        const auto format8 = greyFormat(rows, columns, 8), format12 = greyFormat(rows, columns, 12);
        const auto formatRgb = colourFormat(rows, columns);
        LosslessOptions restarts{12, 4, 0, 6};
        LosslessOptions apart{8, 7, 0, 0, false};
        JpegMaking progressive;
        progressive.progressive = true;
        return std::vector<Sample>{
            {"RLE", rleEncoded(bytePlanes(words12, 1, 2), columns), format12, Compression::Rle},
            {"lossless 8 bit", dcmtkLossless({rows, columns, 1, 8, grey8}, 1), format8, Compression::Jpeg},
            {"lossless 12 bit", losslessEncoded(grey12, rows, columns, 1, restarts), format12,
             Compression::Jpeg},
            {"lossless colour", losslessEncoded(colour, rows, columns, 3, apart), formatRgb,
             Compression::Jpeg},
            {"baseline", jpegEncoded(greyBytes, rows, columns, 1), format8, Compression::Jpeg},
            {"progressive", jpegEncoded(colourBytes, rows, columns, 3, progressive), formatRgb,
             Compression::Jpeg},
            {"extended", dcmtkLossy({rows, columns, 1, 12, grey12}, LossyProcess::Sequential, 90), format12,
             Compression::Jpeg},
            {"12 bit progressive", dcmtkLossy({rows, columns, 1, 12, grey12}, LossyProcess::Progressive, 90),
             format12, Compression::Jpeg},
            {"JPEG-LS", jpegLsEncoded(grey12, rows, columns, 1, 12, LsInterleave::None, 0), format12,
             Compression::JpegLs},
            {"JPEG-LS colour", jpegLsEncoded(colour, rows, columns, 3, 8, LsInterleave::Line, 2), formatRgb,
             Compression::JpegLs},
            {"JPEG 2000", jpeg2000Encoded(ints12, rows, columns, 1, {.precision = 12, .tileSize = 32}),
             format12, Compression::Jpeg2000},
            {"JPEG 2000 colour",
             jpeg2000Encoded(colourInts, rows, columns, 3,
                             {.reversible = false, .transformComponents = true, .inFileFormat = true}),
             formatRgb, Compression::Jpeg2000},
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

TEST(FrameDecoder, WhatDoesNotTouchThePictureIsOverlooked) {
    const auto scanHeader = [](const Bytes& stream) {
        const std::uint8_t marker[] = {0xFF, 0xDA};
        return std::search(stream.begin(), stream.end(), marker, marker + 2) - stream.begin();
    };
    struct Case {
        const char* what;
        std::function<void(Bytes&)> change;
        bool inProgressive = true;
    };
    const Case cases[] = {
        {"zeros that fill the data up", [](Bytes& s) { s.insert(s.end() - 2, 40, 0); }},
        {"ones before a marker", [](Bytes& s) { s.insert(s.end() - 2, 5, 0xFF); }},
        {"comments and application data",
         [&](Bytes& s) {
             const std::uint8_t segments[] = {0xFF, 0xFE, 0, 5, 0xFF, 0xD9, 7, 0xFF, 0xEA, 0, 2};
             s.insert(s.begin() + scanHeader(s), std::begin(segments), std::end(segments));
         }},
        {"bytes behind the end",
         [](Bytes& s) {
             s.insert(s.end(), {0, 0xFF, 0xD8, 7, 0xFF});
         }},
        {"no end marker", [](Bytes& s) { s.resize(s.size() - 2); }, false},
        {"coefficients 0 to 0 in the scan header",
         [&](Bytes& s) {
             const auto last =
                 s.begin() + scanHeader(s) + 6 + 2 * s[static_cast<std::size_t>(scanHeader(s)) + 4];
             if (*last == 63) *last = 0;
         },
         false},
    };
    for (const Sample& sample : everyKind()) {
        Bytes stream = sample.bytes;
        if (stream[0] != 0xFF || stream[1] != 0xD8) continue;
        while (stream.back() != 0xD9) stream.pop_back();
        const bool progressive = std::string(sample.what).find("progressive") != std::string::npos;
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

TEST(FrameDecoder, ThreadsDecodeAtTheSameTime) {
    std::vector<std::vector<std::int64_t>> expected;
    for (const Sample& sample : everyKind())
        expected.push_back(samplesOf(decoded(sample.bytes, sample.format, sample.compression)));
    std::vector<std::thread> threads;
    std::array<bool, 4> same{};
    for (std::size_t t = 0; t < same.size(); ++t)
        threads.emplace_back([&, t] {
            same[t] = true;
            for (std::size_t i = 0; i < expected.size(); ++i) {
                const Sample& sample = everyKind()[(i + t * 3) % expected.size()];
                const auto frame = decoded(sample.bytes, sample.format, sample.compression);
                same[t] =
                    same[t] && frame.ok() && samplesOf(frame) == expected[(i + t * 3) % expected.size()];
            }
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(same, (std::array<bool, 4>{true, true, true, true}));
}

/// Whatever the bytes are, the answer is a frame of the right size or an error that says something.
void expectSaneAnswer(const Bytes& bytes, const Sample& sample) {
    const auto frame = decoded(bytes, sample.format, sample.compression);
    if (!frame) {
        EXPECT_FALSE(frame.error().message.empty());
        return;
    }
    const std::size_t samples = std::visit([](const auto& v) { return v.size(); }, frame.value().samples);
    EXPECT_EQ(samples, frame.value().pixelCount() * static_cast<std::size_t>(sample.format.samplesPerPixel));
}

TEST(FrameDecoder, DamagedBytesNeverLeadAstray) {
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
            expectSaneAnswer(bytes, sample);
        }
    }
}

TEST(FrameDecoder, HeaderOfAnotherKindOfPictureIsSurvived) {
    for (const Sample& sample : everyKind())
        for (const int bits : {1, 8, 16, 32})
            for (const int samplesPerPixel : {1, 3}) {
                Sample other = sample;
                other.format.bitsAllocated = other.format.bitsStored = bits;
                other.format.highBit = bits - 1;
                other.format.samplesPerPixel = samplesPerPixel;
                expectSaneAnswer(sample.bytes, other);
            }
}

TEST(FrameDecoder, PrecisionOfTheStreamWinsUnlessItHoldsWholeCells) {
    const std::vector<std::uint16_t> cells{0xF801, 0x0FFF, 0x07FF, 0x0800};
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
        std::vector<std::uint16_t> samples = cells;
        for (auto& sample : samples) sample = static_cast<std::uint16_t>(sample & ((1 << c.precision) - 1));
        LosslessOptions options;
        options.precision = c.precision;
        auto format = greyFormat(2, 2, 16);
        format.bitsStored = c.stored;
        format.highBit = c.high;
        format.isSigned = c.isSigned;
        EXPECT_EQ(samplesOf(decoded(losslessEncoded(samples, 2, 2, 1, options), format, Compression::Jpeg)),
                  c.expected)
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
    constexpr int side = 32;
    for (const Case& c : cases)
        for (const int components : {1, 3}) {
            if (components == 3 && c.expectedInColour < 0) continue;
            SCOPED_TRACE(c.what);
            const std::vector<std::int32_t> samples(side * side * static_cast<std::size_t>(components),
                                                    c.coded);
            auto format = components == 3 ? colourFormat(side, side) : greyFormat(side, side, 12);
            format.bitsAllocated = 16;
            format.bitsStored = 12;
            format.highBit = c.high;
            format.isSigned = c.headerSigned;
            format.mayBeLossy = true;
            const auto frame =
                c.coder == Coder::LossyJpegLs
                    ? decoded(jpegLsEncoded(std::vector<std::uint16_t>(samples.begin(), samples.end()), side,
                                            side, components, 16, LsInterleave::None, 3),
                              format, Compression::JpegLs)
                    : decoded(
                          jpeg2000Encoded(samples, side, side, components,
                                          {.precision = 16, .isSigned = c.coder == Coder::SignedJpeg2000}),
                          format, Compression::Jpeg2000);
            EXPECT_EQ(
                samplesOf(frame),
                std::vector<std::int64_t>(samples.size(), components == 3 ? c.expectedInColour : c.expected));
        }
}

TEST(FrameDecoder, HandsOutTheBitsBesideTheValues) {
    constexpr int side = 32;
    const auto cells = picture(side * side, 16, Texture::Smooth);
    const auto values = picture(side * side, 12, Texture::Smooth);
    const std::vector<std::int32_t> wide32(cells.begin(), cells.end());
    const std::vector<std::uint32_t> wideCells(cells.begin(), cells.end());
    LosslessOptions whole;
    whole.precision = 16;
    auto format = greyFormat(side, side, 12);
    format.isSigned = true;
    const auto all = [&](const std::vector<std::uint8_t>& stream, Compression compression) {
        return decodeFrame(std::as_bytes(std::span(stream)), format, compression, false, 0,
                           dicom::CellBits::All);
    };
    Jpeg2000Making making;
    making.precision = 16;
    EXPECT_EQ(samplesOf(all(losslessEncoded(cells, side, side, 1, whole), Compression::Jpeg)), wide(cells));
    EXPECT_EQ(
        samplesOf(all(jpegLsEncoded(cells, side, side, 1, 16, LsInterleave::None, 0), Compression::JpegLs)),
        wide(cells));
    EXPECT_EQ(samplesOf(all(jpeg2000Encoded(wide32, side, side, 1, making), Compression::Jpeg2000)),
              wide(cells));
    EXPECT_EQ(samplesOf(all(rleEncoded(bytePlanes(wideCells, 1, 2), side), Compression::Rle)), wide(cells));

    // Lossy streams, and those of another precision, have no such bits.
    making.reversible = false;
    EXPECT_FALSE(
        all(jpegLsEncoded(cells, side, side, 1, 16, LsInterleave::None, 3), Compression::JpegLs).ok());
    EXPECT_FALSE(all(jpeg2000Encoded(wide32, side, side, 1, making), Compression::Jpeg2000).ok());
    whole.precision = 12;
    EXPECT_FALSE(all(losslessEncoded(values, side, side, 1, whole), Compression::Jpeg).ok());
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
        {"arithmetic coding",
         {0xFF, 0xD8, 0xFF, 0xC9, 0, 11, 8, 0, 8, 0, 8, 1, 1, 0x11, 0, 0xFF, 0xDA, 0, 2},
         Compression::Jpeg,
         Kind::Unsupported},
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

}  // namespace
}  // namespace cinedisc::test
