#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Encoders.h"
#include "tests/codecs/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;

std::vector<std::uint8_t> start(const std::vector<std::uint8_t>& stream, std::size_t length) {
    return {stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length)};
}

TEST(JpegLs, ReadsEveryDepthAndInterleaving) {
    for (int bits = 2; bits <= 16; ++bits)
        for (const int components : {1, 3})
            for (const auto interleave : {LsInterleave::None, LsInterleave::Line, LsInterleave::Sample}) {
                if (components == 1 && interleave != LsInterleave::None) continue;
                SCOPED_TRACE(testing::Message()
                             << bits << " bit, " << components << " components, interleaving "
                             << static_cast<int>(interleave));
                const auto samples =
                    picture(static_cast<std::size_t>(31 * 45 * components), bits, Texture::Smooth);
                const auto stream = jpegLsEncoded(samples, 31, 45, components, bits, interleave, 0);
                auto format = greyFormat(31, 45, bits);
                format.samplesPerPixel = components;
                std::vector<std::int64_t> expected = wide(samples);
                if (components == 3)
                    for (auto& sample : expected)
                        sample = bits < 8 ? sample * 255 / ((1 << bits) - 1) : sample >> (bits - 8);
                EXPECT_EQ(samplesOf(decoded(stream, format, Compression::JpegLs)), expected);
            }
}

TEST(JpegLs, EveryTextureComesBackAsNearAsAskedFor) {
    for (const Texture texture : {Texture::Noise, Texture::Smooth, Texture::Flat})
        for (const int bits : {8, 12, 16})
            for (const int near : {0, 1, 3, 10}) {
                SCOPED_TRACE(testing::Message()
                             << bits << " bit, near " << near << ", texture " << static_cast<int>(texture));
                auto samples = picture(40 * 70, bits, texture);
                for (std::size_t i = 900; i < 1700; ++i) samples[i] = samples[i - i % 300];  // long runs too
                const auto stream = jpegLsEncoded(samples, 40, 70, 1, bits, LsInterleave::None, near);
                const auto result = samplesOf(decoded(stream, greyFormat(40, 70, bits), Compression::JpegLs));
                ASSERT_EQ(result.size(), samples.size());
                for (std::size_t i = 0; i < samples.size(); ++i)
                    ASSERT_LE(std::abs(result[i] - samples[i]), near) << i;
            }
}

TEST(JpegLs, CutsAndOtherSizesAreErrors) {
    const auto samples = picture(64 * 40, 12, Texture::Noise);
    const auto stream = jpegLsEncoded(samples, 40, 64, 1, 12, LsInterleave::None, 0);
    for (std::size_t length = 3; length + 8 < stream.size(); length += 61)
        EXPECT_FALSE(decoded(start(stream, length), greyFormat(40, 64, 12), Compression::JpegLs).ok())
            << length;
    EXPECT_FALSE(decoded(stream, greyFormat(41, 64, 12), Compression::JpegLs).ok());
    EXPECT_TRUE(decoded(start(stream, stream.size() - 2), greyFormat(40, 64, 12), Compression::JpegLs).ok())
        << "all but the end marker is there";
}

std::vector<std::int32_t> values(std::size_t count, int bits, bool isSigned) {
    std::vector<std::int32_t> result;
    for (const std::uint16_t sample : picture(count, bits, Texture::Smooth))
        result.push_back(isSigned ? sample - (1 << (bits - 1)) : sample);
    return result;
}

TEST(Jpeg2000, ReadsEveryDepthWrapAndTiling) {
    for (const int bits : {1, 2, 8, 10, 12, 16})
        for (const bool isSigned : {false, true})
            for (const int tileSize : {0, 17})
                for (const bool inFileFormat : {false, true}) {
                    if (bits == 1 && isSigned) continue;
                    SCOPED_TRACE(testing::Message() << bits << " bit, signed " << isSigned << ", tiles "
                                                    << tileSize << ", file format " << inFileFormat);
                    const auto samples = values(33 * 50, bits, isSigned);
                    const auto stream = jpeg2000Encoded(samples, 33, 50, 1,
                                                        {.precision = bits,
                                                         .isSigned = isSigned,
                                                         .inFileFormat = inFileFormat,
                                                         .tileSize = tileSize});
                    auto format = greyFormat(33, 50, bits);
                    format.isSigned = isSigned;
                    EXPECT_EQ(samplesOf(decoded(stream, format, Compression::Jpeg2000)), wide(samples));
                }
}

TEST(Jpeg2000, SignFollowsTheHeader) {
    const auto below = values(20 * 20, 13, true);
    std::vector<std::int32_t> asUnsigned;
    for (const std::int32_t value : below) asUnsigned.push_back(value & 0x1FFF);
    auto format = greyFormat(20, 20, 13);
    const auto unsignedStream = jpeg2000Encoded(asUnsigned, 20, 20, 1, {.precision = 13});
    EXPECT_EQ(samplesOf(decoded(unsignedStream, format, Compression::Jpeg2000)), wide(asUnsigned));
    format.isSigned = true;
    EXPECT_EQ(samplesOf(decoded(unsignedStream, format, Compression::Jpeg2000)), wide(below));
    format.isSigned = false;
    const auto signedStream = jpeg2000Encoded(below, 20, 20, 1, {.precision = 13, .isSigned = true});
    EXPECT_EQ(samplesOf(decoded(signedStream, format, Compression::Jpeg2000)), wide(asUnsigned));
}

TEST(Jpeg2000, ComponentsAreTransformedAsTheStreamSays) {
    std::vector<std::int32_t> rgb, ybr;
    for (int i = 0; i < 24 * 24; ++i) {
        rgb.insert(rgb.end(), {200, i % 256, 30});
        ybr.insert(ybr.end(), {76, 85, 255});
    }
    const std::vector<std::int64_t> red(24 * 24 * 3, 0);
    struct Case {
        const char* what;
        const std::vector<std::int32_t>& samples;
        bool transformed;
        Photometric photometric;
        std::vector<std::int64_t> firstPixel;
    };
    const Case cases[] = {
        {"transformed", rgb, true, Photometric::YbrRct, {200, 0, 30}},
        {"transformed, named RGB", rgb, true, Photometric::Rgb, {200, 0, 30}},
        {"transformed, named YBR_FULL", rgb, true, Photometric::YbrFull, {200, 0, 30}},
        {"not transformed, named so", rgb, false, Photometric::YbrRct, {200, 0, 30}},
        {"not transformed", rgb, false, Photometric::Rgb, {200, 0, 30}},
        {"YBR_FULL within", ybr, false, Photometric::YbrFull, {254, 0, 0}},
    };
    for (const Case& c : cases) {
        const auto stream = jpeg2000Encoded(c.samples, 24, 24, 3, {.transformComponents = c.transformed});
        const auto result =
            samplesOf(decoded(stream, colourFormat(24, 24, c.photometric), Compression::Jpeg2000));
        EXPECT_EQ(std::vector<std::int64_t>(result.begin(), result.begin() + 3), c.firstPixel) << c.what;
    }
    const auto lossy = jpeg2000Encoded(rgb, 24, 24, 3, {.reversible = false, .transformComponents = true});
    const auto result =
        samplesOf(decoded(lossy, colourFormat(24, 24, Photometric::YbrIct), Compression::Jpeg2000));
    for (std::size_t i = 0; i < result.size(); ++i)
        ASSERT_NEAR(static_cast<double>(result[i]), rgb[i], 3) << i;
}

TEST(Jpeg2000, SubsampledComponentsAreSpread) {
    std::vector<std::int32_t> samples;
    for (int i = 0; i < 15 * 15; ++i) samples.insert(samples.end(), {i, i / 15 / 2 * 2, i % 15 / 2 * 2});
    const auto stream = jpeg2000Encoded(samples, 15, 15, 3, {.subsampled = true});
    EXPECT_EQ(samplesOf(decoded(stream, colourFormat(15, 15), Compression::Jpeg2000)), wide(samples));
}

// On a slope the lower levels of a wavelet hold the samples themselves, every other one of every other row:
// so a coarse picture is right in its values and in its place.
TEST(Jpeg2000, CoarsePicturesAreThePictureFromFurtherOff) {
    struct Case {
        const char* what;
        Jpeg2000Making making;
        int headerBits = 12, leastSide = 16, halvings = 2;
        bool headerSigned = false;
        Photometric photometric = Photometric::Monochrome2;
        int components = 1;
    };
    Case cases[] = {
        {"lossless", {.precision = 12}},
        {"lossy", {.precision = 12, .reversible = false}},
        {"signed", {.precision = 12, .isSigned = true}, 12, 16, 2, true},
        {"in tiles and boxes", {.precision = 12, .inFileFormat = true, .tileSize = 40}},
        {"whole cells", {.precision = 16}},
        {"larger asked for", {.precision = 12}, 12, 33, 1},
        {"smaller asked for than there is", {.precision = 12}, 12, 4},
        {"colour", {.precision = 8, .transformComponents = true}, 8, 16, 2, false, Photometric::YbrRct, 3},
        {"no levels", {.precision = 12, .levels = 0}, 12, 16, 0},
        {"small enough", {.precision = 12}, 12, 50, 0},
        {"indices", {.precision = 8}, 8, 16, 0, false, Photometric::PaletteColor},
        {"signs in unsigned samples", {.precision = 12}, 12, 16, 0, true},
    };
    constexpr int rows = 67, columns = 90;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        // Ends at the largest value, beyond which what is interpolated must not begin anew.
        const int top = (1 << c.headerBits) - 1, lowest = c.making.isSigned ? -(top + 1) / 2 : 0;
        std::vector<std::int32_t> samples;
        for (int i = 0; i < rows * columns; ++i) {
            const int slope = lowest + std::min(top, (i / columns + i % columns) * top / 140);
            samples.insert(samples.end(), static_cast<std::size_t>(c.components), slope);
        }
        auto format = greyFormat(rows, columns, c.headerBits);
        format.isSigned = c.headerSigned;
        format.photometric = c.photometric;
        format.samplesPerPixel = c.components;
        auto stream = jpeg2000Encoded(samples, rows, columns, c.components, c.making);
        const auto coarse = dicom::decodeCoarseFrame(std::as_bytes(std::span(stream)), format, c.leastSide);
        ASSERT_EQ(coarse ? coarse->halvings : 0, c.halvings);
        if (!coarse) continue;
        const int step = 1 << c.halvings;
        ASSERT_EQ(coarse->frame.rows, (rows + step - 1) / step);
        ASSERT_EQ(coarse->frame.columns, (columns + step - 1) / step);
        const auto values = samplesOf(coarse->frame);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto pixel = static_cast<int>(i) / c.components;
            const int x = pixel % coarse->frame.columns * step, y = pixel / coarse->frame.columns * step;
            const auto at = static_cast<std::size_t>((y * columns + x) * c.components);
            ASSERT_NEAR(static_cast<double>(values[i]), samples[at],
                        2 + top / (c.making.reversible ? 100 : 50))
                << x << "," << y;
        }
        stream.resize(stream.size() / 2);
        EXPECT_FALSE(dicom::decodeCoarseFrame(std::as_bytes(std::span(stream)), format, c.leastSide));
    }
}

TEST(Jpeg2000, CutsAndLiesAboutSizesAreErrors) {
    const auto samples = values(64 * 64, 12, false);
    const auto stream = jpeg2000Encoded(samples, 64, 64, 1, {.precision = 12});
    for (std::size_t length = 3; length + 8 < stream.size(); length += 61)
        EXPECT_FALSE(decoded(start(stream, length), greyFormat(64, 64, 12), Compression::Jpeg2000).ok())
            << length;
    EXPECT_FALSE(decoded(stream, greyFormat(63, 64, 12), Compression::Jpeg2000).ok());

    auto huge = stream;
    huge[8] = huge[12] = 0x7F;
    EXPECT_FALSE(decoded(huge, greyFormat(64, 64, 12), Compression::Jpeg2000).ok());
}

}  // namespace
}  // namespace cinedisc::test
