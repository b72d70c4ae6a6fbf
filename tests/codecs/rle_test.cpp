#include "tests/codecs/Pictures.h"
#include "tests/codecs/RleEncoder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using Kind = dicom::DecodeError::Kind;

TEST(Rle, ReadsEveryCellWidthAndColour) {
    constexpr int rows = 61, columns = 173;  // more than one portion
    for (const int bytes : {1, 2, 4})
        for (const int samplesPerPixel : {1, 3})
            for (const Texture texture : {Texture::Noise, Texture::Smooth, Texture::Flat}) {
                SCOPED_TRACE(testing::Message() << bytes << " bytes, " << samplesPerPixel
                                                << " samples, texture " << static_cast<int>(texture));
                const auto random = picture(static_cast<std::size_t>(rows * columns * samplesPerPixel),
                                            bytes == 1 ? 8 : 16, texture);
                std::vector<std::uint32_t> samples(random.begin(), random.end());
                if (bytes == 4)
                    for (auto& sample : samples) sample = sample << 16 | (sample ^ 0x5A5A);
                auto format = greyFormat(rows, columns, 8 * bytes);
                format.bitsAllocated = 8 * bytes;
                format.samplesPerPixel = samplesPerPixel;
                if (samplesPerPixel == 3) format.photometric = dicom::Photometric::Rgb;
                std::vector<std::int64_t> expected(samples.begin(), samples.end());
                if (samplesPerPixel == 3)
                    for (auto& sample : expected) sample >>= 8 * (bytes - 1);
                const auto frame = rleEncoded(bytePlanes(samples, samplesPerPixel, bytes), columns);
                EXPECT_EQ(samplesOf(decoded(frame, format, Compression::Rle)), expected);
            }
}

TEST(Rle, SingleBitsArePackedAsInNativeFrames) {
    for (const int columns : {1, 7, 8, 200})
        for (const int samplesPerPixel : {1, 3}) {
            SCOPED_TRACE(columns);
            constexpr int rows = 5;
            std::vector<std::vector<std::uint8_t>> planes;
            std::vector<std::int64_t> expected(static_cast<std::size_t>(rows * columns * samplesPerPixel));
            for (int sample = 0; sample < samplesPerPixel; ++sample) {
                const auto bits = picture(static_cast<std::size_t>(rows * columns), 1, Texture::Noise,
                                          static_cast<unsigned>(sample));
                auto& plane = planes.emplace_back((bits.size() + 7) / 8);
                for (std::size_t i = 0; i < bits.size(); ++i) {
                    plane[i / 8] = static_cast<std::uint8_t>(plane[i / 8] | bits[i] << (i % 8));
                    expected[i * static_cast<std::size_t>(samplesPerPixel) +
                             static_cast<std::size_t>(sample)] = bits[i] * (samplesPerPixel == 3 ? 255 : 1);
                }
            }
            auto format = samplesPerPixel == 3 ? colourFormat(rows, columns) : greyFormat(rows, columns, 1);
            format.bitsAllocated = format.bitsStored = 1;
            format.highBit = 0;
            EXPECT_EQ(samplesOf(decoded(rleEncoded(planes, static_cast<int>(planes[0].size())), format,
                                        Compression::Rle)),
                      expected);
        }
}

std::vector<std::uint8_t> oneSegment(const std::vector<std::uint8_t>& data) {
    std::vector<std::uint8_t> frame(64 + data.size());
    frame[0] = 1;
    frame[4] = 64;
    std::copy(data.begin(), data.end(), frame.begin() + 64);
    return frame;
}

TEST(Rle, SegmentsMayHoldWhatTheStandardAllowsOrEncodersDo) {
    struct Case {
        const char* what;
        std::vector<std::uint8_t> data;
    };
    const Case cases[] = {
        {"plain", {254, 7, 2, 1, 2, 3}},
        {"control byte without meaning", {128, 254, 7, 128, 2, 1, 2, 3}},
        {"padding behind", {254, 7, 2, 1, 2, 3, 0}},
        {"padding within the last literal", {254, 7, 3, 1, 2, 3, 0}},
        {"single bytes", {254, 7, 0, 1, 0, 2, 0, 3}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(samplesOf(decoded(oneSegment(c.data), greyFormat(2, 3, 8), Compression::Rle)),
                  (std::vector<std::int64_t>{7, 7, 7, 1, 2, 3}))
            << c.what;
}

TEST(Rle, ContradictionsAndCutsAreErrors) {
    struct Case {
        const char* what;
        std::vector<std::uint8_t> frame;
        Kind kind;
    };
    auto noSegments = oneSegment({250, 1});
    noSegments[0] = 0;
    auto tooMany = oneSegment({250, 1});
    tooMany[0] = 16;
    for (std::size_t at = 8; at < 64; at += 4) tooMany[at] = 66;
    auto offsetInHeader = oneSegment({250, 1});
    offsetInHeader[4] = 63;
    auto offsetBeyond = oneSegment({250, 1});
    offsetBeyond[6] = 1;
    auto offsetsCross = oneSegment({250, 1});
    offsetsCross[0] = 2;
    offsetsCross[8] = 10;
    const Case cases[] = {
        {"header cut", std::vector<std::uint8_t>(63, 1), Kind::CutOff},
        {"literal cut", oneSegment({5, 1, 2, 3, 4, 5}), Kind::CutOff},
        {"run without its byte", oneSegment({251}), Kind::CutOff},
        {"nothing but its header", oneSegment({}), Kind::CutOff},
        {"run longer by two", oneSegment({249, 1}), Kind::CutOff},
        {"no segments", noSegments, Kind::Broken},
        {"too many segments", tooMany, Kind::Broken},
        {"offset within the header", offsetInHeader, Kind::Broken},
        {"offset beyond the end", offsetBeyond, Kind::CutOff},
        {"offsets that go back", offsetsCross, Kind::Broken},
    };
    for (const Case& c : cases) {
        const auto frame = decoded(c.frame, greyFormat(2, 3, 8), Compression::Rle);
        ASSERT_FALSE(frame.ok()) << c.what;
        EXPECT_EQ(frame.error().kind, c.kind) << c.what;
    }
}

TEST(Rle, EveryCutIsNoticed) {
    const auto random = picture(50 * 300, 16, Texture::Smooth);
    const std::vector<std::uint32_t> samples(random.begin(), random.end());
    const auto frame = rleEncoded(bytePlanes(samples, 1, 2), 300);
    for (std::size_t length = 0; length + 2 < frame.size(); length += 97)
        EXPECT_FALSE(decoded({frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(length)},
                             greyFormat(50, 300, 16), Compression::Rle)
                         .ok());
}

}  // namespace
}  // namespace cinedisc::test
