#include "dicom/DicomFile.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// Files with something of everything, small enough to be damaged a thousand times.
std::vector<Bytes> builtFiles() {
    DicomItem window, lut, group, icon;
    window.text(tags::WindowCenter, "DS", "10").text(tags::WindowWidth, "DS", "20");
    lut.numbers(tags::LUTDescriptor, "US", {4, 0, 16}).numbers(tags::LUTData, "US", {1, 2, 3, 4});
    group.sequence(tags::FrameVOILUTSequence, {window});
    icon.numbers(tags::Rows, "US", {2}).binary(tags::PixelData, "OB", Bytes(4));
    const auto decorated = [&](DicomBuilder builder) {
        builder.sequence(tags::VOILUTSequence, {lut})
            .sequence(tags::PerFrameFunctionalGroups, {group, group});
        builder.sequence(tags::IconImageSequence, {icon}, LengthForm::Explicit);
        builder.text(tags::SpecificCharacterSet, "CS", "\\ISO 2022 IR 87");
        builder.text({0x0010, 0x0010}, "PN", "\x1B$B;3ED\x1B(B");
        builder.text(tags::ShutterShape, "CS", "CIRCULAR").text(tags::CenterOfCircularShutter, "IS", "1\\1");
        builder.text(tags::RadiusOfCircularShutter, "IS", "6");
        builder.numbers({0x6000, 0x0010}, "US", {8}).numbers({0x6000, 0x0011}, "US", {8});
        builder.numbers({0x6000, 0x0050}, "SS", {1, 1}).binary({0x6000, 0x3000}, "OW", Bytes(8));
        return builder;
    };
    std::vector<Bytes> files;
    for (const char* syntax :
         {"1.2.840.10008.1.2", "1.2.840.10008.1.2.1", "1.2.840.10008.1.2.2", "1.2.840.10008.1.2.1.99"}) {
        DicomBuilder builder = decorated(DicomBuilder::image(8, 8, 2, 16, 12));
        builder.gradientPixels().sequence({0x0008, 0x1140}, {window, window});
        builder.transferSyntax(syntax);
        files.push_back(builder.build());
    }
    for (const auto table : {OffsetTable::Empty, OffsetTable::Filled, OffsetTable::Extended})
        for (const int fragments : {1, 3})
            files.push_back(decorated(rleRun(8, 8, 4, table, fragments)).build());
    return files;
}

std::vector<Bytes> sampleFiles() {
    std::vector<Bytes> files;
    const char* folder = std::getenv("CINEDISC_SAMPLES");
    if (!folder || !std::filesystem::is_directory(folder)) return files;
    constexpr std::uintmax_t small = 20'000;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".dcm" || entry.file_size() > small) continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        files.push_back(bytesOf(content));
    }
    return files;
}

/// Everything that a viewer does with a file.
void useUp(const Bytes& bytes) {
    const auto result = DicomFile::open(std::make_shared<MemoryByteSource>(bytes));
    if (!result) {
        EXPECT_FALSE(result.error().message.empty());
        return;
    }
    const DicomFile& file = *result.value();
    EXPECT_EQ(file.frameCount() == 0, file.pictureError().has_value());
    constexpr int several = 5;
    for (int frame = 0; frame < std::min(file.frameCount(), several); ++frame) {
        const auto decoded = file.decode(frame);
        if (decoded) {
            EXPECT_EQ(decoded.value().rows, file.pixelFormat().rows);
        }
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
    const auto below = [&random](std::size_t limit) { return limit == 0 ? 0 : random() % limit; };
    for (std::size_t wounds = 1 + below(4); wounds > 0 && bytes.size() > 8; --wounds) {
        const std::size_t at = below(bytes.size() - 8);
        const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const auto stretch = static_cast<std::ptrdiff_t>(below(std::min<std::size_t>(64, bytes.size() - at)));
        switch (below(6)) {
            case 0:
                *from = static_cast<std::byte>(random());
                break;
            case 1:
                std::fill(from, from + 4, std::byte{0xFF});
                break;
            case 2:
                *from ^= static_cast<std::byte>(1u << below(8));
                break;
            case 3:
                bytes.erase(from, from + stretch);
                break;
            case 4: {
                const Bytes copy(from, from + stretch);
                bytes.insert(from, copy.begin(), copy.end());
                break;
            }
            default:
                if (below(4) == 0) bytes.resize(at);
        }
    }
    return bytes;
}

TEST(DamagedFiles, AreShownOrRefusedButNothingElseHappens) {
    std::mt19937 random(20240229);
    for (const Bytes& original : builtFiles())
        for (int i = 0; i < 400; ++i) useUp(damaged(original, random));
    for (const Bytes& original : sampleFiles())
        for (int i = 0; i < 40; ++i) useUp(damaged(original, random));
}

TEST(DamagedFiles, CutOffAnywhereAreShownOrRefused) {
    for (const Bytes& original : builtFiles())
        for (std::size_t size = 0; size < original.size(); size += 3)
            useUp(Bytes(original.begin(), original.begin() + static_cast<std::ptrdiff_t>(size)));
}

/// A disc that cannot be read beyond a place.
class ScratchedSource : public ByteSource {
  public:
    ScratchedSource(Bytes bytes, std::uint64_t readable) : memory_(std::move(bytes)), readable_(readable) {}
    std::uint64_t size() const override { return memory_.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        const std::uint64_t room = readable_ - std::min(readable_, offset);
        return memory_.readAt(
            offset, into.first(static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), room))));
    }

  private:
    MemoryByteSource memory_;
    std::uint64_t readable_;
};

TEST(DamagedFiles, OnScratchedDiscsAreNotTakenForCutOffOnes) {
    DicomBuilder native = DicomBuilder::image(128, 128, 4);
    native.gradientPixels();
    for (const Bytes& bytes : {native.build(), rleRun(128, 128, 4, OffsetTable::Filled).build(),
                               rleRun(128, 128, 4, OffsetTable::Empty).build()}) {
        for (const std::uint64_t readable : {0u, 200u, 500u, 12'000u, 20'000u}) {
            const auto result = DicomFile::open(std::make_shared<ScratchedSource>(bytes, readable));
            const auto frame = result ? result.value()->decode(1) : Result<Frame>(result.error());
            ASSERT_FALSE(frame.ok()) << readable;
            EXPECT_EQ(frame.error().kind, DecodeError::Kind::CannotRead) << readable << frame.error().message;
        }
    }
}

TEST(DamagedFiles, OfEndlessElementsAreGivenUpInTime) {
    // A private sequence of empty items, and elements without value: eight bytes of file for each.
    for (const Bytes& unit :
         {bytesOf({0xFE, 0xFF, 0x00, 0xE0, 0, 0, 0, 0}), bytesOf({0x09, 0x00, 0x02, 0x10, 0, 0, 0, 0})}) {
        Bytes content;
        content.reserve(8'000'000);
        while (content.size() < 8'000'000) content.insert(content.end(), unit.begin(), unit.end());
        DicomBuilder builder = DicomBuilder::image(4, 4);
        builder.gradientPixels().transferSyntax("1.2.840.10008.1.2");
        Bytes bytes = builder.build();
        if (unit[0] == std::byte{0xFE}) {
            builder.binary({0x0009, 0x1001}, "UN", content);
            bytes = builder.build();
        } else {
            bytes.insert(bytes.begin() + 300, content.begin(), content.end());
        }
        const auto file = opened(bytes);
        EXPECT_TRUE(file->frameCount() == 1 || file->pictureError()->kind == DecodeError::Kind::TooLarge ||
                    file->pictureError()->kind == DecodeError::Kind::CutOff);
    }
}

TEST(DamagedFiles, ThatUnpackWithoutEndAreRefused) {
    // Five hundred megabytes of zeros, deflated to three.
    DicomBuilder meta;
    meta.transferSyntax("1.2.840.10008.1.2.1.99").encoding(Encoding::ExplicitLittle);
    Bytes bomb = meta.build();
    const Bytes chunk = [] {
        // A fixed block of one zero and 258 more, many times over, built bit by bit.
        Bytes out;
        unsigned window = 0, held = 0;
        const auto put = [&](unsigned bits, unsigned count) {
            window |= bits << held;
            held += count;
            for (; held >= 8; held -= 8, window >>= 8) out.push_back(static_cast<std::byte>(window & 0xFF));
        };
        put(0b010, 3);       // a block of fixed codes, not the last
        put(0b00001100, 8);  // the literal 0
        for (int i = 0; i < 2'000'000; ++i) {
            put(0b10100011, 8);  // 258 bytes
            put(0b00000, 5);     // from one byte back
        }
        return out;
    }();
    bomb.insert(bomb.end(), chunk.begin(), chunk.end());
    const auto file = opened(bomb);
    EXPECT_EQ(file->frameCount(), 0);
    EXPECT_EQ(file->pictureError()->kind, DecodeError::Kind::TooLarge);
}

}  // namespace
}  // namespace cinedisc::test
