#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using namespace dicom;

template <typename T>
std::vector<T> samplesAs(const Result<Frame>& frame) {
    if (!frame) {
        ADD_FAILURE() << frame.error().message;
        return {};
    }
    const auto* samples = std::get_if<std::vector<T>>(&frame.value().samples);
    return samples ? *samples : std::vector<T>();
}

TEST(NativeFrames, AreAsManyAsHeaderAndFileAgreeOn) {
    struct Row {
        const char* number;
        int counted, announced;
    };
    // The file holds four frames.
    for (const Row& row : {Row{"4", 4, 4}, Row{"3", 3, 3}, Row{"6", 4, 6}, Row{"99999999999", 4, 2147483647},
                           Row{"1A", 4, 4}, Row{"0", 4, 4}, Row{"-2", 4, 4}, Row{"", 4, 4}}) {
        DicomBuilder builder = DicomBuilder::image(5, 7, 4);
        builder.gradientPixels().text(tags::NumberOfFrames, "IS", row.number);
        const auto file = opened(builder);
        EXPECT_EQ(file->frameCount(), row.counted) << row.number;
        EXPECT_EQ(file->announcedFrameCount(), row.announced) << row.number;
        EXPECT_TRUE(file->decode(row.counted - 1).ok()) << row.number;
        EXPECT_FALSE(file->decode(row.counted).ok()) << row.number;
        EXPECT_FALSE(file->decode(-1).ok()) << row.number;
    }
}

TEST(NativeFrames, AreNotCountedWhereDataBehindThePictureAreOfNoFrame) {
    for (const auto& [behind, counted] : {std::pair(0, 1), {1, 1}, {100, 1}, {144, 1}, {256, 2}, {257, 2}}) {
        DicomBuilder builder = DicomBuilder::image(16, 16);
        builder.remove(tags::NumberOfFrames);
        builder.pixels(Bytes(static_cast<std::size_t>(256 + behind)), "OB");
        EXPECT_EQ(opened(builder)->frameCount(), counted) << behind;
    }
}

TEST(NativeFrames, CutOffRunShowsTheFramesItHas) {
    DicomBuilder builder = DicomBuilder::image(16, 16, 60);
    builder.gradientPixels();
    Bytes bytes = builder.build();
    bytes.resize(bytes.size() - 47 * 256 - 100);
    const auto file = opened(bytes);
    EXPECT_EQ(file->frameCount(), 12);
    EXPECT_TRUE(file->decode(11).ok());
    EXPECT_EQ(file->decode(30).error().message, "The file is cut off: 12 of 60 frames can be shown");

    bytes.resize(bytes.size() - 12 * 256);
    const auto nothing = opened(bytes);
    EXPECT_EQ(nothing->frameCount(), 0);
    EXPECT_EQ(nothing->pictureError()->kind, DecodeError::Kind::CutOff);
}

TEST(NativeFrames, OfSingleBitsNeedNotBeginOnAByte) {
    DicomBuilder builder = DicomBuilder::image(3, 3, 3, 1, 1);
    // Frames of nine bits: all set, none set, every other set.
    const std::uint32_t bits = 0b101010101'000000000'111111111;
    builder.pixels(bytesOf({static_cast<int>(bits & 0xFF), static_cast<int>(bits >> 8 & 0xFF),
                            static_cast<int>(bits >> 16 & 0xFF), static_cast<int>(bits >> 24)}),
                   "OB");
    const auto file = opened(builder);
    ASSERT_EQ(file->frameCount(), 3);
    EXPECT_EQ(samplesAs<std::uint8_t>(file->decode(0)), std::vector<std::uint8_t>(9, 1));
    EXPECT_EQ(samplesAs<std::uint8_t>(file->decode(1)), std::vector<std::uint8_t>(9, 0));
    EXPECT_EQ(samplesAs<std::uint8_t>(file->decode(2)),
              (std::vector<std::uint8_t>{1, 0, 1, 0, 1, 0, 1, 0, 1}));
}

TEST(NativeFrames, PackedCellsOfTwelveBitsAreSpread) {
    DicomBuilder builder = DicomBuilder::image(1, 3, 2, 12, 12);
    // 0x123, 0xABC, 0xFFF and 0x001, 0x800, 0x456, twelve bits each.
    builder.pixels(bytesOf({0x23, 0xC1, 0xAB, 0xFF, 0x1F, 0x00, 0x00, 0x68, 0x45}), "OW");
    const auto file = opened(builder);
    ASSERT_EQ(file->frameCount(), 2);
    EXPECT_EQ(samplesAs<std::uint16_t>(file->decode(0)), (std::vector<std::uint16_t>{0x123, 0xABC, 0xFFF}));
    EXPECT_EQ(samplesAs<std::uint16_t>(file->decode(1)), (std::vector<std::uint16_t>{0x001, 0x800, 0x456}));
}

TEST(NativeFrames, BytesInBigEndianWordsAreTurnedBack) {
    for (const char* kind : {"OW", "OB"}) {
        DicomBuilder builder = DicomBuilder::image(3, 3, 2);
        builder.pixels(pixelsOfFrame(1, 18), kind).transferSyntax("1.2.840.10008.1.2.2");
        const auto file = opened(builder);
        const Bytes all = pixelsOfFrame(1, 18);
        EXPECT_EQ(samplesOf(file->decode(0).value()), Bytes(all.begin(), all.begin() + 9)) << kind;
        EXPECT_EQ(samplesOf(file->decode(1).value()), Bytes(all.begin() + 9, all.end())) << kind;
    }
}

TEST(NativeFrames, SharedChrominancesAreRecognisedByTheLength) {
    for (const std::size_t bytesAPixel : {2u, 3u}) {
        DicomBuilder builder = DicomBuilder::image(2, 4, 2);
        builder.numbers(tags::SamplesPerPixel, "US", {3})
            .text(tags::PhotometricInterpretation, "CS", "YBR_FULL_422");
        builder.pixels(Bytes(2 * 8 * bytesAPixel, std::byte{128}), "OB");
        const auto file = opened(builder);
        ASSERT_EQ(file->frameCount(), 2) << bytesAPixel;
        EXPECT_EQ(samplesAs<std::uint8_t>(file->decode(1)), std::vector<std::uint8_t>(24, 128))
            << bytesAPixel;
    }
}

TEST(NativeFrames, OfFloatingPointAreShown) {
    DicomBuilder floats = DicomBuilder::image(1, 2, 2), doubles = DicomBuilder::image(1, 2);
    for (const Tag tag : {tags::BitsAllocated, tags::BitsStored, tags::HighBit}) floats.remove(tag);
    floats.reals(tags::FloatPixelData, "OF", {0.5, -1, 3, 4});
    doubles.reals(tags::DoubleFloatPixelData, "FD", {0.25, 7});
    EXPECT_EQ(samplesAs<float>(opened(floats)->decode(1)), (std::vector<float>{3, 4}));
    EXPECT_EQ(samplesAs<double>(opened(doubles)->decode(0)), (std::vector<double>{0.25, 7}));
}

TEST(NativeFrames, OfImpossibleSizesAreRefusedBeforeAnythingIsAllocated) {
    struct Row {
        Tag tag;
        std::int64_t value;
        DecodeError::Kind kind;
    };
    using Kind = DecodeError::Kind;
    for (const Row& row : {Row{tags::Rows, 0, Kind::Broken}, Row{tags::SamplesPerPixel, 7, Kind::Unsupported},
                           Row{tags::Rows, 65535, Kind::CutOff}}) {
        DicomBuilder builder = DicomBuilder::image(4, 4);
        builder.gradientPixels().numbers(row.tag, "US", {row.value});
        const auto file = opened(builder);
        EXPECT_EQ(file->frameCount(), 0);
        EXPECT_EQ(file->pictureError()->kind, row.kind) << row.value;
    }
    DicomBuilder huge = DicomBuilder::image(65535, 65535);
    huge.pixels(Bytes(100));
    EXPECT_EQ(opened(huge)->pictureError()->kind, Kind::TooLarge);
}

TEST(NativeFrames, BitsThatContradictEachOtherAreSettled) {
    DicomBuilder builder = DicomBuilder::image(2, 2, 1, 16, 12);
    builder.gradientPixels().numbers(tags::BitsStored, "US", {40}).numbers(tags::HighBit, "US", {77});
    const PixelFormat format = opened(builder)->pixelFormat();
    EXPECT_EQ(format.bitsStored, 16);
    EXPECT_EQ(format.highBit, 15);
}

}  // namespace
}  // namespace cinedisc::test
