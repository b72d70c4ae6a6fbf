#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "tests/dicom/CountingSource.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using namespace dicom;

constexpr std::uint64_t slack = 4096;
constexpr std::size_t mostReads = 3;

struct Layout {
    const char* name;
    bool encapsulated;
    OffsetTable table;
    int rows, frames;
    std::size_t extraHeader;   ///< bytes of private text in front of the image's description
    bool extraBehind = false;  ///< the same, behind the description
};

std::ostream& operator<<(std::ostream& out, const Layout& layout) { return out << layout.name; }

DicomBuilder built(const Layout& layout) {
    DicomBuilder builder = layout.encapsulated ? rleRun(layout.rows, layout.rows, layout.frames, layout.table)
                                               : DicomBuilder::image(layout.rows, layout.rows, layout.frames);
    if (!layout.encapsulated) builder.gradientPixels();
    const std::uint16_t group = layout.extraBehind ? 0x0029 : 0x0009;
    if (layout.extraHeader > 0) builder.binary({group, 0x1001}, "UN", Bytes(layout.extraHeader));
    return builder;
}

class ReadingCost : public testing::TestWithParam<Layout> {};

TEST_P(ReadingCost, FirstFrameTakesHeaderTableFrameAndLittleElse) {
    const Layout& layout = GetParam();
    auto source = std::make_shared<CountingSource>(built(layout).build());
    const auto file = DicomFile::open(source).value();
    ASSERT_EQ(file->frameCount(), layout.frames);
    const Element* pixels = file->header().find(tags::PixelData);
    const std::uint64_t headerBytes = pixels->offset;
    const auto pixelCount = static_cast<std::size_t>(layout.rows * layout.rows);
    const std::uint64_t tableBytes =
        layout.encapsulated
            ? 8 + (layout.table == OffsetTable::Filled ? 4u * static_cast<unsigned>(layout.frames) : 0)
            : 0;
    const std::uint64_t frameBytes =
        layout.encapsulated ? 8 + rleFrame(Bytes(pixelCount)).size() : pixelCount;

    const auto frame = file->decode(0);

    ASSERT_TRUE(frame.ok()) << frame.error().message;
    EXPECT_LE(source->bytes(), headerBytes + tableBytes + frameBytes + slack);
    EXPECT_LE(source->reads(), mostReads);
    EXPECT_TRUE(source->wentForwardOnly());
}

TEST_P(ReadingCost, LaterFrameTakesItselfAndTheItemHeadersOnTheWay) {
    const Layout& layout = GetParam();
    auto source = std::make_shared<CountingSource>(built(layout).build());
    const auto file = DicomFile::open(source).value();
    const int wanted = layout.frames - 1;
    source->forget();

    const auto frame = file->decode(wanted);

    ASSERT_TRUE(frame.ok()) << frame.error().message;
    const auto pixelCount = static_cast<std::size_t>(layout.rows * layout.rows);
    const std::uint64_t frameBytes =
        layout.encapsulated ? 8 + rleFrame(Bytes(pixelCount)).size() : pixelCount;
    const bool hasTable = !layout.encapsulated || layout.table != OffsetTable::Empty;
    const std::uint64_t passed = hasTable ? 0 : 8u * static_cast<unsigned>(wanted);
    EXPECT_LE(source->bytes(), frameBytes + passed + slack);
    EXPECT_TRUE(source->wentForwardOnly());
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, ReadingCost,
    testing::Values(Layout{"raw", false, {}, 512, 5, 0}, Layout{"rawSmall", false, {}, 16, 3, 0},
                    Layout{"rawLongHeader", false, {}, 512, 5, 9000},
                    Layout{"rawLongHeaderBehind", false, {}, 64, 20, 9000, true},
                    Layout{"emptyTable", true, OffsetTable::Empty, 128, 40, 0},
                    Layout{"filledTable", true, OffsetTable::Filled, 128, 40, 0},
                    Layout{"extendedTable", true, OffsetTable::Extended, 128, 40, 0},
                    Layout{"emptyTableLongHeader", true, OffsetTable::Empty, 128, 60, 6000},
                    Layout{"filledTableLongHeader", true, OffsetTable::Filled, 128, 60, 6000, true},
                    Layout{"hugeTable", true, OffsetTable::Filled, 32, 3000, 0},
                    Layout{"manyFramesWithoutTable", true, OffsetTable::Empty, 32, 3000, 0}),
    [](const auto& each) { return std::string(each.param.name); });

// The end of the header may fall anywhere in the first blocks: none of its positions may cost another read.
TEST(ReadingCost, DoesNotDependOnWhereTheHeaderEnds) {
    for (std::size_t extra = 3300; extra < 3800; extra += 2) {
        const Layout layout{"", true, OffsetTable::Empty, 64, 4, extra};
        auto source = std::make_shared<CountingSource>(built(layout).build());
        const auto file = DicomFile::open(source).value();
        ASSERT_TRUE(file->decode(0).ok());
        const std::uint64_t least =
            file->header().find(tags::PixelData)->offset + 16 + rleFrame(Bytes(64 * 64)).size();
        EXPECT_LE(source->bytes(), least + slack) << extra;
        EXPECT_LE(source->reads(), mostReads) << extra;
    }
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
    auto source = std::make_shared<CountingSource>(builder.build());
    const auto file = DicomFile::open(source).value();
    ASSERT_TRUE(file->decode(0).ok());
    EXPECT_FALSE(file->header().find({0x0009, 0x1001})->held);
    EXPECT_LE(source->bytes(), 64u * 64 + 3 * slack);
}

TEST(ReadingCost, ALookUpTableOfLegalSizeIsHeldWhateverItsLength) {
    DicomBuilder builder = DicomBuilder::image(16, 16, 1, 16, 16);
    DicomItem lut;
    lut.numbers({0x0028, 0x3002}, "US", {0, 0, 16})
        .binary({0x0028, 0x3006}, "OW", Bytes(131072, std::byte{0xFF}));
    builder.gradientPixels().sequence({0x0028, 0x3010}, {lut});
    auto source = std::make_shared<CountingSource>(builder.build());
    const auto file = DicomFile::open(source).value();
    ASSERT_EQ(file->greyTransform(0).voiLuts.size(), 1u);
    EXPECT_EQ(file->greyTransform(0).voiLuts[0].entries.size(), 65536u);
    EXPECT_TRUE(source->wentForwardOnly());
}

}  // namespace
}  // namespace cinedisc::test
