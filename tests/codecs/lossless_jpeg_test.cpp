#include "tests/codecs/DcmtkJpeg.h"
#include "tests/codecs/LosslessEncoder.h"
#include "tests/codecs/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using Kind = dicom::DecodeError::Kind;

std::vector<std::uint8_t> symbolsFrom(int first) {
    std::vector<std::uint8_t> symbols(17);
    for (int i = 0; i < 17; ++i)
        symbols[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>((first + i) % 17);
    return symbols;
}

TEST(LosslessJpeg, ReadsEveryPredictorPrecisionAndTextureThatAnotherEncoderWrites) {
    constexpr int rows = 37, columns = 53;
    for (const int components : {1, 3})
        for (const int bits : {8, 12, 16})
            for (int predictor = 1; predictor <= 7; ++predictor)
                for (const Texture texture : {Texture::Noise, Texture::Smooth, Texture::Flat}) {
                    if (components == 3 && bits != 8) continue;
                    SCOPED_TRACE(testing::Message()
                                 << components << " components, " << bits << " bit, predictor " << predictor
                                 << ", texture " << static_cast<int>(texture));
                    const auto samples =
                        picture(static_cast<std::size_t>(rows * columns * components), bits, texture);
                    const JpegSource source{rows, columns, components, bits, samples};
                    const auto stream = dcmtkLossless(source, predictor);
                    const auto format =
                        components == 3 ? colourFormat(rows, columns) : greyFormat(rows, columns, bits);
                    EXPECT_EQ(samplesOf(decoded(stream, format, Compression::Jpeg)), wide(samples));
                    EXPECT_EQ(dcmtkDecoded(stream, source), samples);
                }
}

TEST(LosslessJpeg, AgreesWithAnotherDecoderAboutRestartsPointTransformsAndOddTables) {
    constexpr int rows = 21, columns = 30;
    for (const int bits : {8, 12, 16})
        for (const int shift : {0, 3})
            for (const int restartRows : {0, 1, 4})
                for (const bool interleaved : {true, false})
                    for (const int first : {-1, 0, 4, 12}) {
                        const int components = bits == 8 ? 3 : 1;
                        SCOPED_TRACE(testing::Message()
                                     << bits << " bit, shift " << shift << ", restart " << restartRows
                                     << ", first symbol " << first << ", interleaved " << interleaved);
                        const auto samples = picture(static_cast<std::size_t>(rows * columns * components),
                                                     bits, shift ? Texture::Noise : Texture::Smooth, 7);
                        LosslessOptions options{bits, 1 + (first + 8) % 7, shift, restartRows, interleaved};
                        if (first >= 0) options.tables = {steepTable(symbolsFrom(first)), flatTable()};
                        const auto stream = losslessEncoded(samples, rows, columns, components, options);
                        const auto format =
                            components == 3 ? colourFormat(rows, columns) : greyFormat(rows, columns, bits);
                        auto expected = samples;
                        for (auto& sample : expected)
                            sample = static_cast<std::uint16_t>(sample >> shift << shift);
                        EXPECT_EQ(samplesOf(decoded(stream, format, Compression::Jpeg)), wide(expected));
                        if (interleaved) {
                            EXPECT_EQ(dcmtkDecoded(stream, {rows, columns, components, bits, {}}), expected);
                        }
                    }
}

TEST(LosslessJpeg, ReadsEveryPrecisionFromTwoBits) {
    for (int bits = 2; bits <= 16; ++bits) {
        SCOPED_TRACE(bits);
        const auto samples = picture(64 * 19, bits, Texture::Noise, 3);
        LosslessOptions options;
        options.precision = bits;
        options.predictor = 1 + bits % 7;
        options.tables = {steepTable(symbolsFrom(bits - 1))};
        options.rowsAnnounced = bits % 2 == 0;
        const auto stream = losslessEncoded(samples, 19, 64, 1, options);
        EXPECT_EQ(samplesOf(decoded(stream, greyFormat(19, 64, bits), Compression::Jpeg)), wide(samples));
    }
}

TEST(LosslessJpeg, ReadsPicturesOfFewPixels) {
    for (int columns = 1; columns <= 14; ++columns)
        for (const int rows : {1, 2}) {
            const auto samples = picture(static_cast<std::size_t>(rows * columns), 12, Texture::Flat);
            LosslessOptions options;
            options.precision = 12;
            options.tables = {steepTable(symbolsFrom(0))};
            const auto stream = losslessEncoded(samples, rows, columns, 1, options);
            EXPECT_EQ(samplesOf(decoded(stream, greyFormat(rows, columns, 12), Compression::Jpeg)),
                      wide(samples));
        }
}

TEST(LosslessJpeg, DifferenceOf32768HasNoExtraBits) {
    std::vector<std::uint16_t> samples;
    for (int i = 0; i < 200; ++i) samples.push_back(i % 3 == 0 ? 40000 : 7232);
    LosslessOptions options;
    options.precision = 16;
    for (const auto& table : {flatTable(), steepTable(symbolsFrom(16)), steepTable(symbolsFrom(0))}) {
        options.tables = {table};
        const auto stream = losslessEncoded(samples, 10, 20, 1, options);
        EXPECT_EQ(samplesOf(decoded(stream, greyFormat(10, 20, 16), Compression::Jpeg)), wide(samples));
    }
}

TEST(LosslessJpeg, EveryCutIsNoticed) {
    const auto samples = picture(40 * 30, 12, Texture::Smooth);
    LosslessOptions options;
    options.precision = 12;
    for (const int restartRows : {0, 5}) {
        options.restartRows = restartRows;
        const auto stream = losslessEncoded(samples, 30, 40, 1, options);
        for (std::size_t length = 0; length + 4 < stream.size(); length += 7) {
            const auto frame = decoded({stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length)},
                                       greyFormat(30, 40, 12), Compression::Jpeg);
            ASSERT_FALSE(frame.ok()) << length;
            if (length > 2) {
                EXPECT_EQ(frame.error().kind, Kind::CutOff) << length << ": " << frame.error().message;
            }
        }
    }
}

TEST(LosslessJpeg, ContradictionsAreErrors) {
    const auto samples = picture(40 * 30, 8, Texture::Smooth);
    LosslessOptions options;
    options.restartRows = 10;
    const auto good = losslessEncoded(samples, 30, 40, 1, options);
    const auto find = [&](std::uint8_t code) {
        const std::uint8_t marker[] = {0xFF, code};
        return static_cast<std::size_t>(std::search(good.begin(), good.end(), marker, marker + 2) -
                                        good.begin());
    };
    struct Change {
        const char* what;
        std::size_t at;
        std::uint8_t value;
    };
    const Change changes[] = {
        {"other size than the header's", find(0xC3) + 6, 31},
        {"no precision", find(0xC3) + 4, 1},
        {"too much precision", find(0xC3) + 4, 17},
        {"no components", find(0xC3) + 9, 0},
        {"table of another scan", find(0xDA) + 6, 0x10},
        {"component that is not there", find(0xDA) + 5, 9},
        {"no predictor", find(0xDA) + 7, 0},
        {"predictor beyond the last", find(0xDA) + 7, 8},
        {"everything shifted away", find(0xDA) + 9, 8},
        {"codes that are no prefix codes", find(0xC4) + 5, 3},
        {"symbol beyond 16", find(0xC4) + 22, 17},
        {"restart within a row", find(0xDD) + 5, 0x91},
        {"restart markers out of order", find(0xD1) + 1, 0xD2},
    };
    ASSERT_TRUE(decoded(good, greyFormat(30, 40, 8), Compression::Jpeg).ok());
    for (const Change& change : changes) {
        auto bad = good;
        bad[change.at] = change.value;
        const auto frame = decoded(bad, greyFormat(30, 40, 8), Compression::Jpeg);
        EXPECT_FALSE(frame.ok()) << change.what;
    }
}

TEST(LosslessJpeg, DataThatBelongToMorePixelsAreAnError) {
    const auto samples = picture(64 * 64, 8, Texture::Noise);
    auto stream = losslessEncoded(samples, 64, 64, 1, {});
    stream[8] = 32;  // columns in the frame header, halved
    EXPECT_FALSE(decoded(stream, greyFormat(64, 32, 8), Compression::Jpeg).ok());
}

}  // namespace
}  // namespace cinedisc::test
