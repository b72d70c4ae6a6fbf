#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Pictures.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;
using Samples = std::vector<std::int64_t>;
using Kind = dicom::DecodeError::Kind;

struct NativeCase {
    const char* what;
    int allocated, stored, high;
    bool isSigned, bigEndian;
    std::vector<std::uint8_t> bytes;
    Samples expected;
    std::size_t type;  ///< place in Frame::Samples
};

TEST(Native, ValueIsCutOutOfItsCell) {
    const NativeCase cases[] = {
        {"8 bit", 8, 8, 7, false, false, {0, 127, 128, 255}, {0, 127, 128, 255}, 0},
        {"8 bit signed", 8, 8, 7, true, false, {0, 127, 128, 255}, {0, 127, -128, -1}, 1},
        {"6 of 8 bit signed", 8, 6, 5, true, false, {0, 0x1F, 0xE0, 0x3F}, {0, 31, -32, -1}, 1},
        {"12 of 16 bit, overlay above",
         16,
         12,
         11,
         false,
         false,
         {0xFF, 0x1F, 0x34, 0xF2},
         {0xFFF, 0x234},
         2},
        {"12 of 16 bit signed, not extended",
         16,
         12,
         11,
         true,
         false,
         {0xFF, 0x0F, 0x00, 0x08},
         {-1, -2048},
         3},
        {"12 of 16 bit signed, positive", 16, 12, 11, true, false, {0xFF, 0x07, 0x01, 0x00}, {2047, 1}, 3},
        {"12 of 16 bit from the top", 16, 12, 15, false, false, {0xF3, 0xFF, 0x10, 0x00}, {0xFFF, 1}, 2},
        {"10 of 16 bit in the middle, signed",
         16,
         10,
         12,
         true,
         false,
         {0xFF, 0xFF, 0x00, 0x10},
         {-1, -512},
         3},
        {"16 bit big endian", 16, 16, 15, false, true, {0x12, 0x34, 0xFF, 0xFE}, {0x1234, 0xFFFE}, 2},
        {"16 bit big endian signed", 16, 16, 15, true, true, {0x12, 0x34, 0xFF, 0xFE}, {0x1234, -2}, 3},
        {"32 bit", 32, 32, 31, false, false, {1, 0, 0, 0x80, 2, 0, 0, 0}, {0x80000001, 2}, 4},
        {"20 of 32 bit big endian signed",
         32,
         20,
         19,
         true,
         true,
         {0, 0x0F, 0xFF, 0xFE, 0, 0, 0, 5},
         {-2, 5},
         5},
        {"nonsense about the bits", 16, 40, 2, false, false, {0xFF, 0xFF, 0x00, 0x01}, {0xFFFF, 256}, 2},
    };
    for (const NativeCase& c : cases) {
        SCOPED_TRACE(c.what);
        dicom::PixelFormat format = greyFormat(1, static_cast<int>(c.expected.size()), 8);
        format.bitsAllocated = c.allocated;
        format.bitsStored = c.stored;
        format.highBit = c.high;
        format.isSigned = c.isSigned;
        const auto frame =
            decodeFrame(std::as_bytes(std::span(c.bytes)), format, Compression::None, c.bigEndian);
        EXPECT_EQ(samplesOf(frame), c.expected);
        EXPECT_EQ(frame.value().samples.index(), c.type);
    }
}

TEST(Native, BitsAreTakenFromTheLowEndAndMayStartWithinAByte) {
    dicom::PixelFormat format = greyFormat(2, 5, 1);
    format.bitsAllocated = 1;
    const std::vector<std::uint8_t> bytes{0b1010'0101, 0b0000'0110};
    const auto at = [&](int firstBit) {
        return samplesOf(
            decodeFrame(std::as_bytes(std::span(bytes)), format, Compression::None, false, firstBit));
    };
    EXPECT_EQ(at(0), (Samples{1, 0, 1, 0, 0, 1, 0, 1, 0, 1}));
    EXPECT_EQ(at(3), (Samples{0, 0, 1, 0, 1, 0, 1, 1, 0, 0}));
    EXPECT_FALSE(decodeFrame(std::as_bytes(std::span(bytes)), format, Compression::None, false, 7).ok());
}

TEST(Native, ColourBecomesEightBitTriples) {
    struct Case {
        const char* what;
        Photometric photometric;
        bool planar;
        int columns, allocated, stored;
        std::vector<std::uint8_t> bytes;
        Samples expected;
    };
    const Case cases[] = {
        {"triples", Photometric::Rgb, false, 2, 8, 8, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}},
        {"planes", Photometric::Rgb, true, 2, 8, 8, {1, 4, 2, 5, 3, 6}, {1, 2, 3, 4, 5, 6}},
        {"16 bit", Photometric::Rgb, false, 1, 16, 16, {0xFF, 0x12, 0, 0x34, 0xFF, 0xFF}, {0x12, 0x34, 0xFF}},
        {"12 bit", Photometric::Rgb, false, 1, 16, 12, {0xF0, 0x0F, 0x80, 0, 0x1F, 0}, {255, 8, 1}},
        {"5 bit", Photometric::Rgb, false, 1, 8, 5, {31, 0, 16}, {255, 0, 131}},
        {"YBR",
         Photometric::YbrFull,
         false,
         2,
         8,
         8,
         {76, 85, 255, 255, 128, 128},
         {254, 0, 0, 255, 255, 255}},
        {"YBR in planes",
         Photometric::YbrFull,
         true,
         2,
         8,
         8,
         {76, 255, 85, 128, 255, 128},
         {254, 0, 0, 255, 255, 255}},
        {"YBR pairs",
         Photometric::YbrFull422,
         false,
         2,
         8,
         8,
         {76, 255, 128, 128},
         {76, 76, 76, 255, 255, 255}},
        {"YBR pairs, odd row",
         Photometric::YbrFull422,
         false,
         3,
         8,
         8,
         {1, 2, 128, 128, 3, 0, 128, 128},
         {1, 1, 1, 2, 2, 2, 3, 3, 3}},
        {"pairs expanded already",
         Photometric::YbrFull422,
         false,
         2,
         8,
         8,
         {9, 128, 128, 7, 128, 128},
         {9, 9, 9, 7, 7, 7}},
        {"partial range",
         Photometric::YbrPartial422,
         false,
         2,
         8,
         8,
         {16, 235, 128, 128},
         {0, 0, 0, 255, 255, 255}},
        {"named after a transform", Photometric::YbrRct, false, 1, 8, 8, {1, 2, 3}, {1, 2, 3}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        dicom::PixelFormat format = colourFormat(1, c.columns, c.photometric);
        format.planar = c.planar;
        format.bitsAllocated = c.allocated;
        format.bitsStored = c.stored;
        format.highBit = c.stored - 1;
        const auto frame = decoded(c.bytes, format, Compression::None);
        EXPECT_EQ(samplesOf(frame), c.expected);
        EXPECT_EQ(frame.value().samplesPerPixel, 3);
    }
}

TEST(Native, FloatingPointKeepsItsValues) {
    const std::vector<float> values{0.25f, -1e30f, std::numeric_limits<float>::infinity()};
    dicom::PixelFormat format = greyFormat(1, 3, 32);
    format.sampleKind = dicom::SampleKind::Float;
    const auto frame = decodeFrame(std::as_bytes(std::span(values)), format, Compression::None);
    EXPECT_EQ(std::get<std::vector<float>>(frame.value().samples), values);

    const std::uint8_t bytes[] = {0x3F, 0xD0, 0, 0, 0, 0, 0, 0};
    format = greyFormat(1, 1, 32);
    format.sampleKind = dicom::SampleKind::Double;
    const auto big = decodeFrame(std::as_bytes(std::span(bytes)), format, Compression::None, true);
    EXPECT_EQ(std::get<std::vector<double>>(big.value().samples), std::vector<double>{0.25});
}

TEST(Native, WhatCannotBeDecodedIsNamed) {
    const auto kindOf = [](dicom::PixelFormat format, std::size_t bytes) {
        const auto frame = decoded(std::vector<std::uint8_t>(bytes), format, Compression::None);
        return frame.ok() ? Kind::CannotRead : frame.error().kind;
    };
    EXPECT_EQ(kindOf(greyFormat(4, 4, 12), 31), Kind::CutOff);
    EXPECT_EQ(kindOf(greyFormat(4, 4, 12), 0), Kind::CutOff);
    EXPECT_EQ(kindOf(colourFormat(4, 4), 47), Kind::CutOff);
    EXPECT_EQ(kindOf(colourFormat(4, 4, Photometric::YbrFull422), 31), Kind::CutOff);
    EXPECT_EQ(kindOf(greyFormat(0, 4, 8), 100), Kind::Broken);
    EXPECT_EQ(kindOf(greyFormat(4, -1, 8), 100), Kind::Broken);
    EXPECT_EQ(kindOf(greyFormat(65535, 65535, 16), 100), Kind::TooLarge);
    auto format = greyFormat(4, 4, 12);
    format.bitsAllocated = 12;
    EXPECT_EQ(kindOf(format, 100), Kind::Unsupported);
    format.bitsAllocated = 64;
    EXPECT_EQ(kindOf(format, 1000), Kind::Unsupported);
    format = colourFormat(4, 4);
    format.samplesPerPixel = 4;
    EXPECT_EQ(kindOf(format, 100), Kind::Unsupported);
}

}  // namespace
}  // namespace cinedisc::test
