#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <random>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// With something of everything, small enough to be damaged a thousand times.
Bytes decorated(DicomBuilder builder) {
    DicomItem window, lut, group, icon;
    window.text(tags::WindowCenter, "DS", "10").text(tags::WindowWidth, "DS", "20");
    lut.numbers(tags::LUTDescriptor, "US", {4, 0, 16}).numbers(tags::LUTData, "US", {1, 2, 3, 4});
    group.sequence(tags::FrameVOILUTSequence, {window});
    icon.numbers(tags::Rows, "US", {2}).binary(tags::PixelData, "OB", Bytes(4));
    builder.sequence({0x0008, 0x1140}, {window, window})
        .sequence(tags::VOILUTSequence, {lut})
        .sequence(tags::PerFrameFunctionalGroups, {group, group})
        .sequence(tags::IconImageSequence, {icon}, LengthForm::Explicit)
        .text(tags::SpecificCharacterSet, "CS", "\\ISO 2022 IR 87")
        .text({0x0010, 0x0010}, "PN", "\x1B$B;3ED\x1B(B")
        .text(tags::ShutterShape, "CS", "CIRCULAR")
        .text(tags::CenterOfCircularShutter, "IS", "1\\1")
        .text(tags::RadiusOfCircularShutter, "IS", "6")
        .numbers({0x6000, 0x0010}, "US", {8})
        .numbers({0x6000, 0x0011}, "US", {8})
        .numbers({0x6000, 0x0050}, "SS", {1, 1})
        .binary({0x6000, 0x3000}, "OW", Bytes(8));
    return builder.build();
}

std::vector<Bytes> builtFiles() {
    std::vector<Bytes> files;
    for (const char* syntax : {implicitUid, explicitUid, bigEndianUid, deflatedUid}) {
        DicomBuilder builder = DicomBuilder::image(8, 8, 2, 16, 12);
        files.push_back(decorated(builder.gradientPixels().transferSyntax(syntax)));
    }
    for (const auto table : {OffsetTable::Empty, OffsetTable::Filled, OffsetTable::Extended})
        for (const int fragments : {1, 3}) files.push_back(decorated(rleRun(8, 8, 4, table, fragments)));
    return files;
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

/// One to four of: a byte replaced, a length or count made extreme, a stretch doubled or removed, the end cut
/// off.
Bytes damaged(Bytes bytes, std::mt19937& random) {
    for (auto wounds = 1 + random() % 4; wounds > 0 && bytes.size() > 8; --wounds) {
        const std::size_t at = random() % (bytes.size() - 8);
        const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const Bytes stretch(from, from + static_cast<std::ptrdiff_t>(
                                             random() % std::min<std::size_t>(64, bytes.size() - at)));
        const auto kind = random() % 20;
        if (kind < 7)
            *from = static_cast<std::byte>(random());
        else if (kind < 11)
            std::fill(from, from + 4, std::byte{0xFF});
        else if (kind < 15)
            bytes.erase(from, from + static_cast<std::ptrdiff_t>(stretch.size()));
        else if (kind < 19)
            bytes.insert(from, stretch.begin(), stretch.end());
        else
            bytes.resize(at);
    }
    return bytes;
}

TEST(DamagedFiles, AreShownOrRefusedButNothingElseHappens) {
    std::mt19937 random(20240229);
    for (const Bytes& original : builtFiles()) {
        for (int i = 0; i < 400; ++i) useUp(damaged(original, random));
        for (std::size_t size = 0; size < original.size(); size += 3)
            useUp(Bytes(original.begin(), original.begin() + static_cast<std::ptrdiff_t>(size)));
    }
}

using Kind = DecodeError::Kind;
/// What the names of the others do not promise: frames that all can be decoded.
const std::map<std::string, Kind> unreadable{{"MR_truncated.dcm", Kind::CutOff},
                                             {"no_meta.dcm", Kind::NotDicom},
                                             {"meta_missing_tsyntax.dcm", Kind::Broken},
                                             {"ExplVR_LitEndNoMeta.dcm", Kind::NoPicture},
                                             {"chrKoreanMulti.dcm", Kind::NoPicture}};

TEST(SampleFiles, AreShownWholeAndRefusedOrShownWhenDamaged) {
    std::mt19937 random(20240301);
    for (const auto& path : samplePaths()) {
        SCOPED_TRACE(path.filename().string());
        std::ifstream stream(path, std::ios::binary);
        const Bytes original = bytesOf(std::string{std::istreambuf_iterator<char>(stream), {}});
        const auto file = DicomFile::open(path.string());
        const auto expected = unreadable.find(path.filename().string());
        if (expected != unreadable.end()) {
            EXPECT_EQ(file ? file.value()->pictureError()->kind : file.error().kind, expected->second);
        } else {
            ASSERT_TRUE(file.ok());
            ASSERT_GT(file.value()->frameCount(), 0);
            for (const int frame : {0, file.value()->frameCount() - 1})
                EXPECT_TRUE(file.value()->decode(frame).ok()) << frame;
        }
        constexpr std::size_t small = 20'000;
        for (int i = 0; i < 40 && original.size() <= small; ++i) useUp(damaged(original, random));
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
            EXPECT_EQ(frame.error().kind, DecodeError::Kind::CannotRead) << readable;
        }
    }
}

TEST(DamagedFiles, ThatUnpackToMoreThanTheBoundAreRefused) {
    DicomBuilder meta;
    meta.form.syntax = "1.2.840.10008.1.2.1.99";
    constexpr std::size_t most = 128 << 20;
    for (const auto& [size, kind] : {std::pair(most, Kind::NoPicture), {most + 1, Kind::TooLarge}}) {
        const auto file = opened(meta.build() + wrappedDeflate(Bytes(size)));
        EXPECT_EQ(file->frameCount(), 0);
        EXPECT_EQ(file->pictureError()->kind, kind) << size;
    }
}

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
