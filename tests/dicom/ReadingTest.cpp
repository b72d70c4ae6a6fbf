#include "dicom/DicomFile.h"
#include "dicom/Inflating.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// Files with something of everything, small enough to be damaged a thousand times.
std::vector<Bytes> builtFiles() {
    std::vector<DicomBuilder> files;
    for (const char* syntax : {implicitUid, explicitUid, bigEndianUid, deflatedUid})
        files.push_back(DicomBuilder::image(8, 8, 2, 16, 12).gradientPixels().transferSyntax(syntax));
    for (const auto table : {OffsetTable::Empty, OffsetTable::Filled, OffsetTable::Extended})
        files.push_back(rleRun(8, 8, 4, table));
    const std::string frames = "PerFrameFunctionalGroupsSequence";
    std::vector<Bytes> all;
    for (DicomBuilder& file : files) {
        put(file,
            "ReferencedImageSequence[1].WindowCenter=10, VOILUTSequence.LUTDescriptor=4\\0\\16, "
            "VOILUTSequence.LUTData=1\\2\\3\\4, SpecificCharacterSet=\\ISO 2022 IR 87, "
            "PatientName=\x1B$B;3ED\x1B(B, "
            "ShutterShape=CIRCULAR, CenterOfCircularShutter=1\\1, RadiusOfCircularShutter=6, OverlayRows=8, "
            "OverlayColumns=8, SS:OverlayOrigin=1\\1, OverlayData=1\\2\\3\\4, IconImageSequence.Rows=2, " +
                frames + "[0].FrameVOILUTSequence.WindowCenter=10, " + frames +
                "[1].FrameVOILUTSequence.WindowWidth=20");
        all.push_back(file.build());
    }
    return all;
}

/// Everything that a viewer does with a file.
void useUp(const Bytes& bytes) {
    const auto result = DicomFile::open(std::make_shared<MemoryByteSource>(bytes));
    if (!result) return;
    const DicomFile& file = *result.value();
    EXPECT_EQ(file.frameCount() == 0, file.pictureError().has_value());
    for (int frame = 0; frame < std::min(file.frameCount(), 5); ++frame) {
        const auto decoded = file.decode(frame);
        EXPECT_TRUE(!decoded || decoded.value().rows == file.pixelFormat().rows);
        (void)file.greyTransform(frame);
        for (const Overlay& overlay : file.overlays()) (void)file.overlayBits(overlay, frame);
    }
    (void)file.decode(file.frameCount() - 1);
    (void)file.palette();
    (void)file.shutter(0);
    (void)file.pixelAspect();
    (void)file.text({0x0010, 0x0010});
    (void)describeHeader(file);
}

/// At one to four places: a byte replaced, a length or count made extreme, a stretch doubled or removed.
Bytes damaged(Bytes bytes, std::mt19937& random) {
    for (auto wounds = 1 + random() % 4; wounds > 0; --wounds) {
        const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(random() % (bytes.size() - 64));
        const auto to = from + random() % 64;
        const Bytes stretch(from, to);
        const auto kind = random() % 4;
        if (kind == 0) *from = static_cast<std::byte>(random());
        if (kind == 1) std::fill(from, from + 4, std::byte{0xFF});
        if (kind == 2) bytes.erase(from, to);
        if (kind == 3) bytes.insert(from, stretch.begin(), stretch.end());
    }
    return bytes;
}

using Kind = DecodeError::Kind;

TEST(DamagedFiles, AreShownOrRefusedButNothingElseHappens) {
    std::mt19937 random(20240229);
    for (const Bytes& original : builtFiles()) {
        for (int i = 0; i < 400; ++i) useUp(damaged(original, random));
        for (std::size_t size = 0; size < original.size(); size += 3)
            useUp(Bytes(original.begin(), original.begin() + static_cast<std::ptrdiff_t>(size)));
    }
}

TEST(DamagedFiles, OnScratchedDiscsAreNotTakenForCutOffOnes) {
    for (const Bytes& bytes : {DicomBuilder::image(128, 128, 4).gradientPixels().build(),
                               rleRun(128, 128, 4, OffsetTable::Filled).build(),
                               rleRun(128, 128, 4, OffsetTable::Empty).build()}) {
        for (const std::uint64_t readable : {0u, 200u, 500u, 12'000u, 20'000u}) {
            const auto result = DicomFile::open(std::make_shared<CountingSource>(bytes, readable));
            const auto frame = result ? result.value()->decode(1) : Result<Frame>(result.error());
            ASSERT_FALSE(frame.ok()) << readable;
            EXPECT_EQ(frame.error().kind, Kind::CannotRead) << readable;
        }
    }
}

TEST(DamagedFiles, ThatUnpackToMoreThanTheBoundAreRefused) {
    DicomBuilder meta;
    meta.form.syntax = deflatedUid;
    const auto file = opened(meta.build() + wrappedDeflate(Bytes((128 << 20) + 1)));
    EXPECT_EQ(file->pictureError().value().kind, Kind::TooLarge);
    for (const std::size_t size : {1'000u, 3'000'000u}) {
        const MemoryByteSource deflated(Bytes(3) + wrappedDeflate(Bytes(size)));
        const auto whole = inflateFrom(deflated, 3, size);
        EXPECT_TRUE(whole && whole.value() == Bytes(size));
        EXPECT_EQ(inflateFrom(deflated, 3, size - 1).error().kind, Kind::TooLarge);
    }
}

constexpr std::uint64_t slack = 4096, mostReads = 3;

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
    // Large private values are left in the file.
    const std::uint64_t header =
        file->header().find(tags::PixelData)->offset - (extra > 100'000 ? extra - 2 * slack : 0);
    EXPECT_LE(source->bytes, header + (table ? 8 + entries : 0) + frameBytes + slack);
    EXPECT_LE(source->reads, mostReads);
    EXPECT_TRUE(source->wentForwardOnly);
    source->forget();
    for (int frame = 1; frame < frames; ++frame) ASSERT_TRUE(file->decode(frame).ok());
    EXPECT_LE(source->reads, static_cast<std::uint64_t>(frames - 1));

    const auto again = DicomFile::open(source).value();
    source->forget();
    ASSERT_TRUE(again->decode(frames - 1).ok());
    EXPECT_LE(source->bytes, frameBytes + passed + slack);
    EXPECT_TRUE(source->wentForwardOnly);
}

TEST(ReadingCost, OfAFrameIsWhatItTakesAndLittleElse) {
    constexpr auto empty = OffsetTable::Empty, filled = OffsetTable::Filled;
    for (const Layout& layout : {Layout{{}, 512, 5},
                                 {{}, 16, 3},
                                 {{}, 512, 5, 9000},
                                 {{}, 64, 20, 9000, 0x0029},
                                 {{}, 64, 2, 1 << 20},
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

}  // namespace
}  // namespace cinedisc::test
