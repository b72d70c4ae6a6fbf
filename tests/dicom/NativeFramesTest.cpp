#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using namespace dicom;

std::vector<double> samplesIn(const Result<Frame>& frame) {
    std::vector<double> numbers;
    if (frame)
        std::visit([&](const auto& all) { numbers.assign(all.begin(), all.end()); }, frame.value().samples);
    return numbers;
}

/// The cell of a pixel, taken bit by bit; of a signed one as a number of `stored` bits.
double cellAt(const Bytes& bytes, std::size_t index, const DicomBuilder& image, int highBit, bool isSigned) {
    const auto allocated = static_cast<std::size_t>(image.bitsAllocated);
    std::int64_t value = 0;
    for (std::size_t bit = 0; bit < static_cast<std::size_t>(image.bitsStored); ++bit) {
        const std::size_t at =
            index * allocated + bit + static_cast<std::size_t>(highBit + 1 - image.bitsStored);
        value |= std::to_integer<std::int64_t>(bytes[at / 8] >> at % 8 & std::byte{1}) << bit;
    }
    const std::int64_t range = std::int64_t{1} << image.bitsStored;
    return static_cast<double>(isSigned && value >= range / 2 ? value - range : value);
}

TEST(NativeFrames, OfAllLayoutsAreWhatTheirBitsSay) {
    constexpr int rows = 3, columns = 5, frames = 3;
    for (const int allocated : {1, 4, 7, 8, 10, 12, 16, 20, 24, 31, 32}) {
        for (int layout = 0; layout < 4; ++layout) {
            const int stored = allocated - (layout % 2 ? allocated / 4 : 0);
            const int highBit = layout == 1 ? stored - 1 : allocated - 1;
            const bool isSigned = layout >= 2 && allocated > 1;
            DicomBuilder builder = DicomBuilder::image(rows, columns, frames, allocated, stored);
            builder.numbers(tags::HighBit, "US", {highBit})
                .numbers(tags::PixelRepresentation, "US", {isSigned});
            Bytes bytes = pixelsOfFrame(allocated, std::size_t(rows * columns * frames * allocated + 7) / 8);
            if (bytes.size() % 2) bytes.push_back({});
            for (const char* syntax : {implicitUid, explicitUid, bigEndianUid, deflatedUid}) {
                // Packed cells have no byte order of their own.
                if (syntax == bigEndianUid && allocated > 8 && allocated != 16 && allocated != 32) continue;
                for (const char* kind : {"OW", "OB"}) {
                    if (*kind == 'O' && kind[1] == 'B' && allocated > 8) continue;
                    const auto unit = allocated == 32 && syntax == bigEndianUid ? "OL" : kind;
                    const auto file = opened(builder.pixels(bytes, unit).transferSyntax(syntax));
                    ASSERT_EQ(file->frameCount(), frames);
                    for (int frame = 0; frame < frames; ++frame) {
                        std::vector<double> expected;
                        for (int i = 0; i < rows * columns; ++i)
                            expected.push_back(cellAt(bytes, std::size_t(frame * rows * columns + i), builder,
                                                      highBit, isSigned));
                        EXPECT_EQ(samplesIn(file->decode(frame)), expected)
                            << syntax << ' ' << kind << ' ' << allocated << ' ' << layout << ' ' << frame;
                    }
                }
            }
        }
    }
}

TEST(NativeFrames, AreAsManyAsHeaderAndFileAgreeOn) {
    struct Row {
        const char* number;
        int behind;  ///< bytes behind four frames, or that are cut off
        int counted, announced;
    };
    for (const Row& row :
         {Row{"4", 0, 4, 4}, Row{"3", 0, 3, 3}, Row{"6", 0, 4, 6}, Row{"99999999999", 0, 4, 2147483647},
          Row{"1A", 0, 4, 4}, Row{"0", 0, 4, 4}, Row{"-2", 0, 4, 4}, Row{"", 0, 4, 4}, Row{"", 1, 4, 4},
          Row{"", 2, 1, 1}, Row{"", 17, 5, 5}, Row{"4", -1, 3, 4}, Row{"4", -47, 1, 4}}) {
        DicomBuilder builder = DicomBuilder::image(4, 4, 4);
        builder.gradientPixels().text(tags::NumberOfFrames, "IS", row.number);
        builder.pixels(builder.elements.back().value + Bytes(std::size_t(std::max(row.behind, 0))), "OB");
        Bytes bytes = builder.build();
        bytes.resize(bytes.size() - std::size_t(std::max(-row.behind, 0)));
        const auto file = opened(bytes);
        SCOPED_TRACE(row.number + std::string(" ") + std::to_string(row.behind));
        EXPECT_EQ(file->frameCount(), row.counted);
        EXPECT_EQ(file->announcedFrameCount(), row.announced);
        EXPECT_TRUE(file->decode(row.counted - 1).ok());
        EXPECT_FALSE(file->decode(-1).ok());
        const auto missing = file->decode(row.counted);
        ASSERT_FALSE(missing.ok());
        const bool isCut = row.counted < row.announced;
        EXPECT_EQ(missing.error().completeFrames, isCut ? row.counted : 0);
        EXPECT_EQ(missing.error().reason,
                  isCut ? DecodeError::Reason::Frames : DecodeError::Reason::NoSuchFrame);
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
    EXPECT_EQ(samplesIn(opened(floats)->decode(1)), (std::vector<double>{3, 4}));
    EXPECT_EQ(samplesIn(opened(doubles)->decode(0)), (std::vector<double>{0.25, 7}));
    EXPECT_EQ(opened(floats)->pixelFormat().highBit, 31);
}

TEST(NativeFrames, OfImpossibleDescriptionsAreRefusedOrSetRight) {
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
        ASSERT_TRUE(file->pictureError());
        EXPECT_EQ(file->pictureError()->kind, row.kind) << row.rows << " " << row.columns;
    }
    // Allocated, stored and high bit, as they are stated and taken; -1 for none.
    for (const auto& [stated, taken] :
         std::vector<std::pair<std::array<int, 3>, std::array<int, 3>>>{{{-1, -1, -1}, {8, 8, 7}},
                                                                        {{-1, 8, -1}, {8, 8, 7}},
                                                                        {{-1, 12, -1}, {16, 12, 11}},
                                                                        {{16, 12, 15}, {16, 12, 15}},
                                                                        {{16, 12, 10}, {16, 12, 11}},
                                                                        {{16, 12, 16}, {16, 12, 11}},
                                                                        {{16, 17, 16}, {16, 16, 15}},
                                                                        {{16, 0, 0}, {16, 16, 15}},
                                                                        {{0, 8, 7}, {8, 8, 7}},
                                                                        {{65, 9, 8}, {16, 9, 8}},
                                                                        {{16, 16, 15}, {16, 16, 15}},
                                                                        {{64, 64, 63}, {64, 64, 63}}}) {
        DicomBuilder builder = DicomBuilder::image(2, 2);
        builder.pixels(Bytes(64));
        const Tag tagsOf[] = {tags::BitsAllocated, tags::BitsStored, tags::HighBit};
        for (std::size_t i = 0; i < 3; ++i) {
            builder.numbers(tagsOf[i], "US", {stated[i]});
            if (stated[i] < 0) builder.remove(tagsOf[i]);
        }
        const auto format = opened(builder)->pixelFormat();
        EXPECT_EQ((std::array{format.bitsAllocated, format.bitsStored, format.highBit}), taken);
    }
}

TEST(NativeFrames, HaveColoursOnlyWithTheSamplesForThem) {
    for (const auto& [name, samples, meaning] : {std::tuple("MONOCHROME1", 1, Photometric::Monochrome1),
                                                 {"RGB", 1, Photometric::Monochrome2},
                                                 {"PALETTE COLOR", 1, Photometric::Monochrome2},
                                                 {"MONOCHROME1", 3, Photometric::Rgb},
                                                 {"YBR_FULL", 3, Photometric::YbrFull}}) {
        DicomBuilder builder = DicomBuilder::image(2, 2);
        builder.pixels(Bytes(12), "OB")
            .numbers(tags::SamplesPerPixel, "US", {samples})
            .numbers(tags::PlanarConfiguration, "US", {1})
            .text(tags::PhotometricInterpretation, "CS", name);
        EXPECT_EQ(opened(builder)->pixelFormat().photometric, meaning) << name << samples;
        EXPECT_EQ(opened(builder)->pixelFormat().planar, samples == 3);
    }
}

}  // namespace
}  // namespace cinedisc::test
