#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "tests/dicom/CountingSource.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <optional>

namespace cinedisc::test {
namespace {

using namespace dicom;

constexpr std::uint64_t slack = 4096;
constexpr std::size_t mostReads = 3;

struct Layout {
    std::optional<OffsetTable> table;  ///< none: native pixels
    int side, frames;
    std::size_t extraHeader = 0;   ///< bytes of private text
    std::uint16_t group = 0x0009;  ///< where that stands: before the image's description or behind
};

void expectCheap(const Layout& layout) {
    const auto& [table, side, frames, extra, group] = layout;
    SCOPED_TRACE(std::to_string(side) + "x" + std::to_string(frames) + " " + std::to_string(extra));
    DicomBuilder builder =
        table ? rleRun(side, side, frames, *table) : DicomBuilder::image(side, side, frames);
    if (!table) builder.gradientPixels();
    if (extra > 0) builder.binary({group, 0x1001}, "UN", Bytes(extra));
    const auto source = std::make_shared<CountingSource>(builder.build());
    const auto pixelCount = static_cast<std::size_t>(side * side);
    const std::uint64_t frameBytes = table ? 8 + rleFrame(Bytes(pixelCount)).size() : pixelCount;
    const std::uint64_t entries = table == OffsetTable::Filled ? 4u * static_cast<unsigned>(frames) : 0;
    const std::uint64_t passed = table == OffsetTable::Empty ? 8u * static_cast<unsigned>(frames - 1) : 0;

    const auto file = DicomFile::open(source).value();
    ASSERT_EQ(file->frameCount(), frames);
    ASSERT_TRUE(file->decode(0).ok());
    const std::uint64_t header = file->header().find(tags::PixelData)->offset;
    EXPECT_LE(source->bytes(), header + (table ? 8 + entries : 0) + frameBytes + slack);
    EXPECT_LE(source->reads(), mostReads);
    EXPECT_TRUE(source->wentForwardOnly());

    const auto again = DicomFile::open(source).value();
    source->forget();
    ASSERT_TRUE(again->decode(frames - 1).ok());
    EXPECT_LE(source->bytes(), frameBytes + passed + slack);
    EXPECT_TRUE(source->wentForwardOnly());
}

TEST(ReadingCost, OfAFrameIsWhatItTakesAndLittleElse) {
    constexpr auto empty = OffsetTable::Empty, filled = OffsetTable::Filled;
    for (const Layout& layout : {Layout{{}, 512, 5},
                                 {{}, 16, 3},
                                 {{}, 512, 5, 9000},
                                 {{}, 64, 20, 9000, 0x0029},
                                 {empty, 128, 40},
                                 {filled, 128, 40},
                                 {OffsetTable::Extended, 128, 40},
                                 {empty, 128, 60, 6000},
                                 {filled, 128, 60, 6000, 0x0029},
                                 {filled, 32, 3000},
                                 {empty, 32, 3000}})
        expectCheap(layout);
    // The end of the header may fall anywhere in the first blocks: no place may cost another read.
    for (std::size_t extra = 3300; extra < 3800; extra += 2) expectCheap({empty, 64, 4, extra});
}

TEST(ReadingCost, PlayingForwardWithoutTableIsOneReadAFrame) {
    constexpr int frames = 30;
    auto source = std::make_shared<CountingSource>(rleRun(128, 128, frames, OffsetTable::Empty).build());
    const auto file = DicomFile::open(source).value();
    ASSERT_TRUE(file->decode(0).ok());
    source->forget();
    for (int frame = 1; frame < frames; ++frame) ASSERT_TRUE(file->decode(frame).ok());
    EXPECT_EQ(source->reads(), static_cast<std::size_t>(frames - 1));
}

TEST(ReadingCost, LargePrivateValuesAreLeftInTheFile) {
    DicomBuilder builder = DicomBuilder::image(64, 64);
    builder.gradientPixels().binary({0x0009, 0x1001}, "OB", Bytes(1 << 20));
    const auto source = std::make_shared<CountingSource>(builder.build());
    ASSERT_TRUE(DicomFile::open(source).value()->decode(0).ok());
    EXPECT_LE(source->bytes(), 64u * 64 + 3 * slack);
}

}  // namespace
}  // namespace cinedisc::test
