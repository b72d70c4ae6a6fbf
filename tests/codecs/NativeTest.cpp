#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Pictures.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;
using Bytes = std::vector<std::uint8_t>;
using Samples = std::vector<std::int64_t>;

TEST(Native, ValueIsCutOutOfItsCell) {
    std::mt19937 engine(8);
    for (int round = 0; round < 500; ++round) {
        const int size = 1 << engine() % 3, allocated = 8 * size;
        dicom::PixelFormat format = greyFormat(3, 5, 8);
        format.bitsAllocated = allocated;
        format.bitsStored = 1 + static_cast<int>(engine() % static_cast<unsigned>(allocated));
        format.highBit = format.bitsStored - 1;
        if (engine() % 2) format.highBit = allocated - 1;
        if (engine() % 2) format.highBit = (format.highBit + format.bitsStored - 1) / 2;
        format.isSigned = engine() % 2;
        const bool bigEndian = engine() % 2;
        const std::int64_t range = std::int64_t{1} << format.bitsStored;
        Bytes bytes;
        Samples expected;
        for (int i = 0; i < 15; ++i) {
            const std::uint32_t cell = engine();
            for (int byte = 0; byte < size; ++byte)
                bytes.push_back(static_cast<std::uint8_t>(cell >> 8 * (bigEndian ? size - 1 - byte : byte)));
            const auto value = (cell >> (format.highBit + 1 - format.bitsStored)) % range;
            expected.push_back(format.isSigned && value >= range / 2 ? value - range : value);
        }
        SCOPED_TRACE(testing::Message() << format.bitsStored << " of " << allocated << " bit up to "
                                        << format.highBit << ", signed " << format.isSigned);
        const auto frame = decodeFrame(std::as_bytes(std::span(bytes)), format, Compression::None, bigEndian);
        ASSERT_EQ(samplesOf(frame), expected);
        const std::size_t ofSize = size == 4 ? 4 : static_cast<std::size_t>(size - 1) * 2;
        EXPECT_EQ(frame.value().samples.index(), ofSize + (format.isSigned ? 1 : 0));
    }
    dicom::PixelFormat nonsense = greyFormat(1, 2, 16);
    nonsense.bitsStored = 40;
    nonsense.highBit = 2;
    EXPECT_EQ(samplesOf(decoded({0xFF, 0xFF, 0, 1}, nonsense, Compression::None)), (Samples{0xFFFF, 256}));
}

TEST(Native, BitsAreTakenFromTheLowEndAndMayStartWithinAByte) {
    dicom::PixelFormat format = greyFormat(2, 5, 1);
    format.bitsAllocated = 1;
    const Bytes bytes{0b1010'0101, 0b0000'0110};
    const auto at = [&](int firstBit) {
        return decodeFrame(std::as_bytes(std::span(bytes)), format, Compression::None, false, firstBit);
    };
    EXPECT_EQ(samplesOf(at(0)), (Samples{1, 0, 1, 0, 0, 1, 0, 1, 0, 1}));
    EXPECT_EQ(samplesOf(at(3)), (Samples{0, 0, 1, 0, 1, 0, 1, 1, 0, 0}));
    EXPECT_FALSE(at(7).ok());
}

TEST(Native, ColourBecomesEightBitTriples) {
    const auto rgb = Photometric::Rgb, ybr = Photometric::YbrFull, pairs = Photometric::YbrFull422;
    const auto partial = Photometric::YbrPartial422, transform = Photometric::YbrRct;
    struct Case {
        const char* what;
        Photometric photometric;
        Bytes bytes;
        Samples expected;
        bool planar = false;
        int allocated = 8, stored = 8;
    };
    const Case cases[] = {
        {"triples", rgb, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}},
        {"planes", rgb, {1, 4, 2, 5, 3, 6}, {1, 2, 3, 4, 5, 6}, true},
        {"16 bit", rgb, {0xFF, 0x12, 0, 0x34, 0xFF, 0xFF}, {0x12, 0x34, 0xFF}, false, 16, 16},
        {"12 bit", rgb, {0xF0, 0x0F, 0x80, 0, 0x1F, 0}, {255, 8, 1}, false, 16, 12},
        {"5 bit", rgb, {31, 0, 16}, {255, 0, 131}, false, 8, 5},
        {"YBR", ybr, {76, 85, 255, 255, 128, 128}, {254, 0, 0, 255, 255, 255}},
        {"YBR in planes", ybr, {76, 255, 85, 128, 255, 128}, {254, 0, 0, 255, 255, 255}, true},
        {"YBR pairs", pairs, {76, 255, 128, 128}, {76, 76, 76, 255, 255, 255}},
        {"YBR pairs, odd row", pairs, {1, 2, 128, 128, 3, 0, 128, 128}, {1, 1, 1, 2, 2, 2, 3, 3, 3}},
        {"pairs expanded already", pairs, {9, 128, 128, 7, 128, 128}, {9, 9, 9, 7, 7, 7}},
        {"partial range", partial, {16, 235, 128, 128}, {0, 0, 0, 255, 255, 255}},
        {"named after a transform", transform, {1, 2, 3}, {1, 2, 3}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        auto format = colourFormat(1, static_cast<int>(c.expected.size()) / 3, c.photometric);
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

}  // namespace
}  // namespace cinedisc::test
