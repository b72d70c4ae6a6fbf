#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>
#include <tuple>

namespace cinedisc::test {
namespace {

using namespace dicom;

std::vector<double> samplesIn(const Result<Frame>& frame) {
    std::vector<double> numbers;
    if (frame)
        std::visit([&](const auto& all) { numbers.assign(all.begin(), all.end()); }, frame.value().samples);
    return numbers;
}

/// The cells of a frame, taken bit by bit; of signed ones as numbers of `stored` bits.
std::vector<double> cellsOf(const Bytes& bytes, int frame, const DicomBuilder& image, int highBit,
                            bool isSigned) {
    std::vector<double> cells;
    const int pixels = image.rows * image.columns;
    for (int i = frame * pixels; i < (frame + 1) * pixels; ++i) {
        std::int64_t value = 0;
        for (int bit = 0; bit < image.bitsStored; ++bit) {
            const auto at = std::size_t(i * image.bitsAllocated + bit + highBit + 1 - image.bitsStored);
            value |= std::to_integer<std::int64_t>(bytes[at / 8] >> at % 8 & std::byte{1}) << bit;
        }
        const std::int64_t range = std::int64_t{1} << image.bitsStored;
        cells.push_back(static_cast<double>(isSigned && value >= range / 2 ? value - range : value));
    }
    return cells;
}

TEST(NativeFrames, OfAllLayoutsAreWhatTheirBitsSay) {
    constexpr int frames = 3;
    std::mt19937 random(3);
    const auto any = [&](int from, int to) { return from + int(random() % unsigned(to - from + 1)); };
    for (int i = 0; i < 3000; ++i) {
        const int allocated = std::array{1, 4, 7, 8, 10, 12, 16, 20, 24, 31, 32}[std::size_t(any(0, 10))];
        const int stored = any(1, allocated), highBit = any(stored - 1, allocated - 1);
        const bool isSigned = allocated > 1 && any(0, 1);
        const char* syntax =
            std::array{implicitUid, explicitUid, bigEndianUid, deflatedUid}[std::size_t(any(0, 3))];
        // Packed cells have no byte order of their own.
        const bool isBig = syntax == bigEndianUid;
        if (isBig && allocated > 8 && allocated % 16) continue;
        DicomBuilder builder = DicomBuilder::image(3, 5, frames, allocated, stored).transferSyntax(syntax);
        builder.numbers(tags::HighBit, "US", {highBit}).numbers(tags::PixelRepresentation, "US", {isSigned});
        Bytes bytes(std::size_t(15 * frames * allocated + 15) / 16 * 2);
        for (std::byte& byte : bytes) byte = static_cast<std::byte>(random());
        builder.pixels(bytes, allocated == 32 && isBig ? "OL" : allocated > 8 || any(0, 1) ? "OW" : "OB");
        const auto file = opened(builder);
        ASSERT_EQ(file->frameCount(), frames);
        for (int frame = 0; frame < frames; ++frame)
            EXPECT_EQ(samplesIn(file->decode(frame)), cellsOf(bytes, frame, builder, highBit, isSigned))
                << syntax << ' ' << allocated << ' ' << stored << ' ' << highBit << ' ' << isSigned;
    }
}

TEST(NativeFrames, AreAsManyAsHeaderAndFileAgreeOn) {
    struct Row {
        const char* number;
        int behind;  ///< bytes behind four frames, or that are cut off
        int counted, announced;
    };
    for (const Row& row : {Row{"4", 0, 4, 4},
                           {"3", 0, 3, 3},
                           {"6", 0, 4, 6},
                           {"99999999999", 0, 4, 2147483647},
                           {"1A", 0, 4, 4},
                           {"0", 0, 4, 4},
                           {"-2", 0, 4, 4},
                           {"", 0, 4, 4},
                           {"", 1, 4, 4},
                           {"", 2, 1, 1},
                           {"", 17, 5, 5},
                           {"4", -1, 3, 4},
                           {"4", -47, 1, 4}}) {
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
        put(builder, "SamplesPerPixel=3, PhotometricInterpretation=YBR_FULL_422");
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
    for (const auto& [puts, kind] : {std::pair("Rows=0, Columns=4", Kind::Broken),
                                     {"Rows=4, Columns=0", Kind::Broken},
                                     {"SamplesPerPixel=7", Kind::Unsupported},
                                     {"Rows=65535", Kind::CutOff},
                                     {"Rows=16384, Columns=16384", Kind::CutOff},
                                     {"Rows=16385, Columns=16384", Kind::TooLarge},
                                     {"Rows=65535, Columns=65535", Kind::TooLarge}}) {
        DicomBuilder builder = DicomBuilder::image(4, 4);
        put(builder.pixels(Bytes(4)), puts);
        const auto file = opened(builder);
        EXPECT_EQ(file->frameCount(), 0);
        EXPECT_EQ(file->pictureError().value().kind, kind) << puts;
    }
    // Allocated, stored and high bit, as they are stated and taken.
    for (const auto& [stated, taken] : {std::pair("BitsAllocated=, BitsStored=, HighBit=", "8 8 7"),
                                        {"BitsAllocated=, HighBit=", "8 8 7"},
                                        {"BitsAllocated=, BitsStored=12, HighBit=", "16 12 11"},
                                        {"BitsAllocated=16, BitsStored=12, HighBit=15", "16 12 15"},
                                        {"BitsAllocated=16, BitsStored=12, HighBit=10", "16 12 11"},
                                        {"BitsAllocated=16, BitsStored=12, HighBit=16", "16 12 11"},
                                        {"BitsAllocated=16, BitsStored=17, HighBit=16", "16 16 15"},
                                        {"BitsAllocated=16, BitsStored=0, HighBit=0", "16 16 15"},
                                        {"BitsAllocated=0", "8 8 7"},
                                        {"BitsAllocated=65, BitsStored=9, HighBit=8", "16 9 8"},
                                        {"BitsAllocated=64, BitsStored=64, HighBit=63", "64 64 63"}}) {
        DicomBuilder builder = DicomBuilder::image(2, 2);
        put(builder.pixels(Bytes(64)), stated);
        std::ostringstream found;
        const auto format = opened(builder)->pixelFormat();
        found << format.bitsAllocated << ' ' << format.bitsStored << ' ' << format.highBit;
        EXPECT_EQ(found.str(), taken) << stated;
    }
}

TEST(NativeFrames, HaveColoursOnlyWithTheSamplesForThem) {
    for (const std::string planes : {"0", "1"})
        for (const auto& [puts, meaning, isColour] :
             {std::tuple("SamplesPerPixel=1, PhotometricInterpretation=MONOCHROME1", Photometric::Monochrome1,
                         0),
              {"SamplesPerPixel=1, PhotometricInterpretation=RGB", Photometric::Monochrome2, 0},
              {"SamplesPerPixel=1, PhotometricInterpretation=PALETTE COLOR", Photometric::Monochrome2, 0},
              {"SamplesPerPixel=3, PhotometricInterpretation=MONOCHROME1", Photometric::Rgb, 1},
              {"SamplesPerPixel=3, PhotometricInterpretation=YBR_FULL", Photometric::YbrFull, 1}}) {
            DicomBuilder builder = DicomBuilder::image(2, 2);
            put(builder.pixels(Bytes(12), "OB"), puts + (", PlanarConfiguration=" + planes));
            EXPECT_EQ(opened(builder)->pixelFormat().photometric, meaning) << puts;
            EXPECT_EQ(opened(builder)->pixelFormat().planar, isColour && planes == "1");
        }
}

}  // namespace
}  // namespace cinedisc::test
