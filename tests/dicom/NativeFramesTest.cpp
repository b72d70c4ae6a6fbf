#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using namespace dicom;

template <typename T>
std::vector<T> samplesAs(const Result<Frame>& frame) {
    const auto* samples = frame ? std::get_if<std::vector<T>>(&frame.value().samples) : nullptr;
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
        builder.pixels(Bytes(static_cast<std::size_t>(256 + behind)), "OB").remove(tags::NumberOfFrames);
        EXPECT_EQ(opened(builder)->frameCount(), counted) << behind;
    }
}

TEST(NativeFrames, CutOffRunShowsTheFramesItHas) {
    Bytes bytes = DicomBuilder::image(16, 16, 60).gradientPixels().build();
    bytes.resize(bytes.size() - 47 * 256 - 100);
    const auto file = opened(bytes);
    EXPECT_EQ(file->frameCount(), 12);
    EXPECT_TRUE(file->decode(11).ok());
    EXPECT_EQ(file->decode(30).error().completeFrames, 12);

    bytes.resize(bytes.size() - 12 * 256);
    const auto nothing = opened(bytes);
    EXPECT_EQ(nothing->frameCount(), 0);
    EXPECT_EQ(nothing->pictureError()->kind, DecodeError::Kind::CutOff);
}

TEST(NativeFrames, OfSingleBitsNeedNotBeginOnAByte) {
    DicomBuilder builder = DicomBuilder::image(3, 3, 3, 1, 1);
    // Frames of nine bits: all set, none set, every other set.
    const auto file = opened(builder.pixels(numberBytes(0b101010101'000000000'111111111, 4), "OB"));
    ASSERT_EQ(file->frameCount(), 3);
    EXPECT_EQ(samplesOf(file->decode(0).value()), Bytes(9, std::byte{1}));
    EXPECT_EQ(samplesOf(file->decode(1).value()), Bytes(9));
    EXPECT_EQ(samplesOf(file->decode(2).value()), bytesOf({1, 0, 1, 0, 1, 0, 1, 0, 1}));
}

TEST(NativeFrames, PackedCellsOfTwelveBitsAreSpread) {
    DicomBuilder builder = DicomBuilder::image(1, 3, 2, 12, 12);
    // 0x123, 0xABC, 0xFFF and 0x001, 0x800, 0x456, twelve bits each.
    const auto file = opened(builder.pixels(bytesOf({0x23, 0xC1, 0xAB, 0xFF, 0x1F, 0x00, 0x00, 0x68, 0x45})));
    ASSERT_EQ(file->frameCount(), 2);
    EXPECT_EQ(samplesAs<std::uint16_t>(file->decode(0)), (std::vector<std::uint16_t>{0x123, 0xABC, 0xFFF}));
    EXPECT_EQ(samplesAs<std::uint16_t>(file->decode(1)), (std::vector<std::uint16_t>{0x001, 0x800, 0x456}));
}

TEST(NativeFrames, BytesInBigEndianWordsAreTurnedBack) {
    for (const char* kind : {"OW", "OB"}) {
        DicomBuilder builder = DicomBuilder::image(3, 3, 2);
        const Bytes all = pixelsOfFrame(1, 18);
        const auto file = opened(builder.pixels(all, kind).transferSyntax("1.2.840.10008.1.2.2"));
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
        EXPECT_EQ(samplesOf(file->decode(1).value()), Bytes(24, std::byte{128})) << bytesAPixel;
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
    using Kind = DecodeError::Kind;
    struct Row {
        int rows, columns, samples;
        Kind kind;
    };
    for (const Row& row : {Row{0, 4, 1, Kind::Broken},
                           {4, 0, 1, Kind::Broken},
                           {4, 4, 7, Kind::Unsupported},
                           {65535, 4, 1, Kind::CutOff},
                           {16384, 16384, 1, Kind::CutOff},
                           {16385, 16384, 1, Kind::TooLarge},
                           {65535, 65535, 1, Kind::TooLarge}}) {
        DicomBuilder builder = DicomBuilder::image(row.rows, row.columns);
        builder.pixels(Bytes(16)).numbers(tags::SamplesPerPixel, "US", {row.samples});
        const auto file = opened(builder);
        EXPECT_EQ(file->frameCount(), 0);
        EXPECT_EQ(file->pictureError().value().kind, row.kind) << row.rows << "x" << row.columns;
    }
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
