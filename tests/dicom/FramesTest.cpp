#include "dicom/CodeStream.h"
#include "dicom/Inflating.h"
#include "dicom/Tags.h"
#include "dicom/codecs/LibraryDecoding.h"
#include "dicom/codecs/LibraryProcesses.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>
#include <thread>
#include <tuple>

namespace cinedisc::test {
namespace {

using namespace dicom;

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
            EXPECT_EQ(samplesIn(file->decode(frame)), cellsOf(bytes, frame, builder, highBit, isSigned)) << i;
    }
}

TEST(NativeFrames, AreAsManyAsHeaderAndFileAgreeOn) {
    struct Row {
        const char* number;
        int behind;  ///< bytes behind four frames, or that are cut off
        int counted, announced;
    };
    const Row rows[] = {{"4", 0, 4, 4},  {"3", 0, 3, 3}, {"6", 0, 4, 6},  {"99999999999", 0, 4, 2147483647},
                        {"1A", 0, 4, 4}, {"0", 0, 4, 4}, {"-2", 0, 4, 4}, {"", 0, 4, 4},
                        {"", 1, 4, 4},   {"", 2, 1, 1},  {"", 17, 5, 5},  {"4", -1, 3, 4},
                        {"4", -47, 1, 4}};
    for (const Row& row : rows) {
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
        DicomBuilder builder =
            DicomBuilder::image(2, 4, 2).pixels(Bytes(16 * bytesAPixel, std::byte{128}), "OB");
        put(builder, "SamplesPerPixel=3, PhotometricInterpretation=YBR_FULL_422");
        EXPECT_TRUE(shows(*opened(builder), 1, Bytes(24, std::byte{128}))) << bytesAPixel;
    }
}

TEST(NativeFrames, OfDoublePrecisionAreShown) {
    DicomBuilder builder = DicomBuilder::image(1, 2, 2);
    builder.reals(tags::DoubleFloatPixelData, "FD", {0.5, -1, 3, 4});
    EXPECT_EQ(samplesIn(opened(builder)->decode(1)), (std::vector<double>{3, 4}));
}

TEST(NativeFrames, OfImpossibleDescriptionsAreRefusedOrSetRight) {
    using Kind = DecodeError::Kind;
    const std::pair<const char*, Kind> rows[] = {
        {"Rows=0, Columns=4", Kind::Broken},          {"Rows=4, Columns=0", Kind::Broken},
        {"SamplesPerPixel=7", Kind::Unsupported},     {"Rows=65535", Kind::CutOff},
        {"Rows=16384, Columns=16384", Kind::CutOff},  {"Rows=16385, Columns=16384", Kind::TooLarge},
        {"Rows=65535, Columns=65535", Kind::TooLarge}};
    for (const auto& [puts, kind] : rows) {
        DicomBuilder builder = DicomBuilder::image(4, 4);
        put(builder.pixels(Bytes(4)), puts);
        const auto file = opened(builder);
        EXPECT_EQ(file->frameCount(), 0);
        EXPECT_EQ(file->pictureError().value().kind, kind) << puts;
    }
    struct Row {
        std::string stated, bits = "8 8 7";  ///< allocated, stored, high
        Photometric photometric = Photometric::Monochrome2;
        bool planar = false;
    };
    for (const Row& row :
         {Row{"BitsAllocated=, BitsStored=, HighBit="},
          {"BitsAllocated=, HighBit="},
          {"BitsAllocated=16, BitsStored=17, HighBit=16", "16 16 15"},
          {"BitsAllocated=16, BitsStored=0, HighBit=0", "16 16 15"},
          {"BitsAllocated=0"},
          {"BitsAllocated=65, BitsStored=9, HighBit=8", "16 9 8"},
          {"BitsAllocated=64, BitsStored=64, HighBit=63", "64 64 63"},
          // Colours need the samples for them.
          {"SamplesPerPixel=1, PhotometricInterpretation=MONOCHROME1", "8 8 7", Photometric::Monochrome1},
          {"SamplesPerPixel=1, PhotometricInterpretation=RGB"},
          {"SamplesPerPixel=1, PhotometricInterpretation=PALETTE COLOR"},
          {"SamplesPerPixel=3, PhotometricInterpretation=MONOCHROME1", "8 8 7", Photometric::Rgb, true},
          {"SamplesPerPixel=3, PhotometricInterpretation=YBR_FULL", "8 8 7", Photometric::YbrFull, true}}) {
        DicomBuilder builder = DicomBuilder::image(2, 2);
        put(builder.pixels(Bytes(64)), row.stated + ", PlanarConfiguration=1");
        const auto format = opened(builder)->pixelFormat();
        std::ostringstream bits;
        bits << format.bitsAllocated << ' ' << format.bitsStored << ' ' << format.highBit;
        EXPECT_EQ(std::tuple(bits.str(), format.photometric, format.planar),
                  std::tuple(row.bits, row.photometric, row.planar));
    }
}

/// Frames out of fragments of random length, of which only the first begins like a code stream: one each, or
/// several at least for the first.
struct RandomRun {
    RandomRun(std::mt19937& random, int count, bool hasOneEach) : frames(std::size_t(count)) {
        for (Bytes& frame : frames) {
            table.push_back(offsets.back());
            auto parts = hasOneEach ? 1 : table.size() == 1 ? 2 + random() % 3 : 1 + random() % 4;
            for (; parts > 0; --parts) {
                Bytes fragment(8 + random() % 40 * 2);
                for (std::byte& byte : fragment) byte = static_cast<std::byte>(random() % 255);
                if (frame.empty()) fragment = fakeJpeg(fragment.size(), static_cast<int>(random() % 255));
                offsets.push_back(offsets.back() + 8 + std::uint32_t(fragment.size()));
                frame = frame + fragment;
                fragments.push_back(std::move(fragment));
            }
        }
    }

    std::vector<Bytes> fragments, frames;
    std::vector<std::uint32_t> table, offsets{0};  ///< of each frame; of each fragment's item and of the end
};

DicomBuilder jpegPicture(int frames) {
    return DicomBuilder::image(64, 64, frames).transferSyntax(jpegSyntax);
}

/// What is wrong with a table, or with the items behind it.
enum Fault { None, NoTable, Late, Early, Zeros, Backwards, TooShort, TooLong, Beyond, LastBeyond, Extended };

void spoil(std::vector<std::uint32_t>& table, Fault fault) {
    const auto each = [&table](auto change) { std::for_each(table.begin(), table.end(), change); };
    if (fault == NoTable || fault == Extended) table.clear();
    if (fault == Late) each([](auto& entry) { entry += entry ? 8 : 0; });
    if (fault == Early) each([](auto& entry) { entry -= entry ? 8 : 0; });
    if (fault == Zeros) each([](auto& entry) { entry = 0; });
    if (fault == Backwards) std::reverse(table.begin(), table.end());
    if (fault == TooShort) table.pop_back();
    if (fault == TooLong) table.push_back(table.back() + 20);
    if (fault == Beyond) each([](auto& entry) { entry *= 0x100000; });
    if (fault == LastBeyond) table.back() = 0x40000000;
}

void expectFrame(const DicomFile& file, int frame, const Bytes& stream) {
    const auto read = file.readFrame(frame);
    ASSERT_TRUE(read.ok()) << frame << " kind " << static_cast<int>(read.error().kind);
    EXPECT_EQ(Bytes(read.value().bytes().begin(), read.value().bytes().end()), stream) << frame;
}

TEST(EncapsulatedFrames, AreFoundInAnyOrderWhateverTellsThem) {
    std::mt19937 random(77);
    for (int i = 0; i < 4000; ++i) {
        const auto fault = static_cast<Fault>(i % (Extended + 1));
        const int frames = 2 + static_cast<int>(random() % 6);
        const RandomRun run(random, frames, random() % 3 == 0);
        SCOPED_TRACE(std::to_string(i) + " fault " + std::to_string(fault));
        auto table = run.table;
        DicomBuilder builder = jpegPicture(frames);
        if (fault == Extended) builder.numbers(tags::ExtendedOffsetTable, "OV", {table.begin(), table.end()});
        spoil(table, fault);
        auto fragments = run.fragments;
        // Without its end a file may be cut off, as such a table says.
        const bool isEnded = random() % 2 || fault == Beyond || fault == LastBeyond;
        if (table.empty() && fault != Extended && random() % 2) {
            fragments.back().push_back(std::byte{1});
            const auto second = std::ranges::find(run.offsets, run.table[1]) - run.offsets.begin();
            fragments.insert(fragments.begin() + second, Bytes());
            fragments.emplace_back();
        }
        builder.encapsulated(fragments, table, isEnded ? FilePart::Present : FilePart::Absent);
        if (fault == None && random() % 2) builder.remove(tags::NumberOfFrames);
        const auto file = opened(builder);
        ASSERT_EQ(file->frameCount(), frames);
        for (int k = 0; k < 2 * frames; ++k) {
            const auto frame = k < frames ? k : static_cast<int>(random()) & 1;
            const auto asked = i % 2 ? frame : frames - 1 - frame;
            auto stream = run.frames[std::size_t(asked)];
            if (asked == frames - 1 && fragments.back().empty()) stream.push_back(std::byte{1});
            expectFrame(*file, asked, stream);
        }
    }
}

TEST(EncapsulatedFrames, OfACutOffRunAreShownAsFarAsTheyGo) {
    std::mt19937 random(78);
    for (int i = 0; i < 1500; ++i) {
        const int frames = 2 + static_cast<int>(random() % 5);
        const RandomRun run(random, frames, random() % 3 == 0);
        const bool hasTable = i % 2;
        DicomBuilder builder = jpegPicture(frames);
        builder.encapsulated(run.fragments, hasTable ? run.table : std::vector<std::uint32_t>());
        Bytes bytes = builder.build();
        const std::size_t first = bytes.size() - 8 - run.offsets.back();
        const std::size_t room = random() % run.offsets.back();
        bytes.resize(first + room);
        const auto file = opened(bytes);
        EXPECT_EQ(file->announcedFrameCount(), frames);
        const auto complete = int(std::ranges::upper_bound(run.table, room) - run.table.begin()) - 1;
        SCOPED_TRACE(std::to_string(i) + ": " + std::to_string(complete) + " of " + std::to_string(frames));
        // Between two fragments, or before one begins like a frame, nothing shows what is missing.
        if (std::any_of(run.offsets.begin(), run.offsets.end(),
                        [room](auto offset) { return room >= offset && room < offset + 10; }))
            continue;
        for (int frame = frames - 1; frame >= 0; --frame) {
            if (frame < complete) {
                expectFrame(*file, frame, run.frames[std::size_t(frame)]);
            } else {
                const auto read = file->readFrame(frame);
                ASSERT_FALSE(read.ok()) << frame;
                EXPECT_EQ(read.error().kind, DecodeError::Kind::CutOff) << frame;
                EXPECT_EQ(read.error().frame, frame);
            }
        }
        if (hasTable && complete + 1 < frames) {
            EXPECT_EQ(file->frameCount(), complete);
            EXPECT_EQ(file->readFrame(frames - 1).error().completeFrames, complete);
        }
    }
}

TEST(EncapsulatedFrames, AreToldApartByTheirBeginningsOrElseDealtOutEvenly) {
    const Bytes a = fakeJpeg(100, 1), b = fakeJpeg(200, 2), c = fakeJpeg(60, 3);
    const Bytes part(40, std::byte{5}), other(40, std::byte{6});
    struct Row {
        const char* stated;
        int frames;
        std::vector<Bytes> fragments;
        std::vector<std::pair<int, Bytes>> asked;
        std::vector<std::uint32_t> table = {};
    };
    const Row rows[] = {
        // The first two begin streams, and only then is seen that not every fragment does.
        {"3", 3, {a, b, part, c, part}, {{0, a}, {2, c + part}, {1, b + part}}},
        {"2", 2, {a, part, other, part}, {{1, other + part}, {0, a + part}}},
        // Seen only while the second frame, which seemed to begin a stream, is being read.
        {"3", 3, {a, part, c, other, part, other, part, part, other}, {{1, other + part + other}}},
        // Streams without any known beginning: one fragment each.
        {"3", 3, {part, other, part}, {{1, other}}},
        {"1", 1, {a, b}, {{0, a}}},
        {"1", 1, {part, other}, {{0, part + other}}},
        // As many as there is room for, as the table has entries; one with an entry for each fragment.
        {"2000000000", 39, {a, b, c}, {{2, c}}},
        {"1A", 3, {a, b, c}, {{2, c}}, {0, 108, 316}},
        {"", 1, {a, part}, {{0, a + part}}, {0, 108}},
    };
    for (const Row& row : rows) {
        DicomBuilder builder = jpegPicture(1);
        builder.encapsulated(row.fragments, row.table).text(tags::NumberOfFrames, "IS", row.stated);
        const auto file = opened(builder);
        EXPECT_EQ(file->frameCount(), row.frames);
        for (const auto& [frame, stream] : row.asked) expectFrame(*file, frame, stream);
        EXPECT_FALSE(file->readFrame(row.frames).ok());
    }
}

TEST(CodeStreams, AreKnownByTheirFirstBytes) {
    const auto found = [](const Bytes& bytes) { return sniffCompression(bytes); };
    const Bytes start = bytesOf({0xFF, 0xD8}), frame = bytesOf({0xFF, 0xF7, 0, 2});
    for (const int code : {0xC4, 0xCC, 0xE0, 0xBF})
        EXPECT_EQ(found(start + bytesOf({0xFF, code, 0, 4, 0xFF, 0xC0}) + frame), Compression::JpegLs);
    for (const int code : {0xC0, 0xC3, 0xCF, 0xDA})
        EXPECT_EQ(found(start + bytesOf({0xFF, code, 0, 2}) + frame), Compression::Jpeg) << code;
    EXPECT_EQ(found(start + bytesOf({0xFF}) + frame), Compression::JpegLs) << "a fill byte";
    EXPECT_EQ(found(start), Compression::Jpeg);
    EXPECT_EQ(found(bytesOf({0xFF})), std::nullopt);
    EXPECT_EQ(found(bytesOf({0xFF, 0x4F, 0xFF, 0x51})), Compression::Jpeg2000);
    EXPECT_EQ(found(bytesOf({0xFF, 0x4F, 0xFF})), std::nullopt);
    EXPECT_EQ(found(bytesOf({0, 0, 0, 12, 'j', 'P', ' ', ' '})), Compression::Jpeg2000);
    const auto isRle = [&](int segments, int first, int second) {
        return found(bytesOf({segments, 0, 0, 0, first, 0, 0, 0, second, 0, 0, 0})) == Compression::Rle;
    };
    EXPECT_TRUE(isRle(1, 64, 0) && isRle(15, 64, 65) && isRle(2, 64, 65));
    EXPECT_FALSE(isRle(0, 64, 65) || isRle(16, 64, 65) || isRle(2, 64, 64) || isRle(1, 63, 0));
    EXPECT_EQ(found(bytesOf({1, 0, 0, 0, 64, 0, 0, 0, 0, 0, 0})), std::nullopt);
}

TEST(EncapsulatedFrames, EndWhereGarbageBegins) {
    const Bytes stream = fakeJpeg(40, 1);
    for (const auto& table : {std::vector<std::uint32_t>(), {0, 48, 96}}) {
        Bytes bytes = jpegPicture(3).encapsulated({stream, stream, stream}, table).build();
        bytes[bytes.size() - 8 - 48] = std::byte{7};
        const auto file = opened(bytes);
        expectFrame(*file, 1, stream);
        EXPECT_EQ(file->readFrame(2).error().kind, DecodeError::Kind::Broken);
    }
}

TEST(EncapsulatedFrames, AreUnderstoodInAnyWrapping) {
    Bytes runs = bytesOf({1, 0, 0, 0, 64}) + Bytes(59), pixels;
    for (int i = 0; i < 6; ++i) {
        runs = runs + bytesOf({0x81, i});
        pixels = pixels + Bytes(128, static_cast<std::byte>(i));
    }
    const DicomBuilder image = DicomBuilder::image(24, 32);
    DicomBuilder bare = image, native = image, hidden = image, deflated = image, packed = image;
    for (const DicomBuilder* builder :
         {&bare.transferSyntax(rleSyntax).pixels(runs, "OB"),
          &native.transferSyntax(jpegSyntax).pixels(pixels, "OB"),
          // The other way round: a syntax of native pixels is named.
          &hidden.encapsulated({runs}, {}),
          &deflated.transferSyntax("1.2.840.10008.1.2.8.1").encapsulated({wrappedDeflate(pixels)}, {}),
          &packed.transferSyntax("1.2.840.10008.1.2.1.98").encapsulated({pixels}, {})}) {
        EXPECT_TRUE(shows(*opened(*builder), 0, pixels)) << builder->form.syntax;
    }
    EXPECT_FALSE(opened(packed)->decodeCoarse(0, opened(packed)->readFrame(0).value(), 1));
    Bytes cut = bare.build();
    cut.pop_back();
    EXPECT_EQ(opened(cut)->pictureError()->kind, DecodeError::Kind::CutOff);
}

TEST(EncapsulatedFrames, AreWhatSyntaxAndHeaderVouchFor) {
    struct Row {
        const char* syntax;
        bool isLossless, isSlow;
    };
    for (const auto& [syntax, isLossless, isSlow] : {Row{"1.2.840.10008.1.2.4.90", true, true},
                                                     {"1.2.840.10008.1.2.4.203", false, true},
                                                     {jpegSyntax, false, false},
                                                     {"1.2.3.4 nobody knows", false, false}}) {
        for (const auto& [loss, mayBeLossy] : {std::pair("", !isLossless), {"00", false}, {"01", true}}) {
            const int side = mayBeLossy ? 4000 : 64;
            DicomBuilder builder = DicomBuilder::image(side, side).transferSyntax(syntax);
            builder.encapsulated({fakeJpeg(9, 9)}, {}).text(tags::LossyImageCompression, "CS", loss);
            const auto file = opened(builder);
            EXPECT_EQ(file->pixelFormat().mayBeLossy, mayBeLossy) << syntax << loss;
            EXPECT_EQ(file->isSlowToDecode(), isSlow) << syntax;
            EXPECT_EQ(file->decodesOnAllProcessors(), isSlow && side == 4000) << syntax;
        }
    }
}

/// Processes that end with every frame, and are counted.
struct DyingProcesses : ConfinedProcesses {
    struct Process : ConfinedProcess {
        std::span<std::byte> memory() override { return bytes; }
        Outcome ask(std::chrono::milliseconds) override { return Outcome::Died; }

        Bytes bytes = Bytes(1 << 20);
    };
    std::unique_ptr<ConfinedProcess> start(std::size_t) override {
        ++started;
        return std::make_unique<Process>();
    }

    int started = 0;
};

TEST(EncapsulatedFrames, OfWhichEachEndsItsDecoderAreSoonGivenUp) {
    auto dying = std::make_unique<DyingProcesses>();
    const int& started = dying->started;
    codecs::LibraryProcesses processes(std::move(dying));
    codecs::decodeInProcesses(&processes);
    DicomBuilder builder = jpegPicture(20);
    const Bytes stream = bytesOf({0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 0, 64, 0,  64, 1,    1,   17,
                                  0,    0xFF, 0xDA, 0,    8, 1,  1, 0, 0,  63, 0,  0xFF, 0xD9});
    builder.encapsulated(std::vector<Bytes>(20, stream), {});
    const auto file = opened(builder);
    for (int frame = 0; frame < 20; ++frame) {
        const auto decoded = file->decode(frame);
        ASSERT_FALSE(decoded.ok());
        EXPECT_EQ(decoded.error().reason, DecodeError::Reason::Decoder);
        EXPECT_EQ(decoded.error().frame, frame);
    }
    EXPECT_EQ(started, 6);  // the very first was there before a frame was
    codecs::decodeInProcesses(nullptr);
}

TEST(EncapsulatedFrames, CanBeReadFromSeveralThreads) {
    constexpr int many = 60, side = 8;
    for (const auto table : {OffsetTable::Empty, OffsetTable::Filled}) {
        const auto file = opened(rleRun(side, side, many, table));
        std::vector<std::jthread> threads;
        for (const int step : {1, 7, 11, 13})
            threads.emplace_back([&, step] {
                for (int i = 0; i < many * step; i += step)
                    EXPECT_TRUE(shows(*file, i % many, pixelsOfFrame(i % many, side * side))) << i % many;
            });
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
    meta.form.syntax = deflatedUid;
    const auto file = opened(meta.build() + wrappedDeflate(Bytes((128 << 20) + 1)));
    EXPECT_EQ(file->pictureError().value().kind, DecodeError::Kind::TooLarge);
    for (const std::size_t size : {1'000u, 3'000'000u}) {
        const MemoryByteSource deflated(Bytes(3) + wrappedDeflate(Bytes(size)));
        const auto whole = inflateFrom(deflated, 3, size);
        EXPECT_TRUE(whole && whole.value() == Bytes(size));
        EXPECT_EQ(inflateFrom(deflated, 3, size - 1).error().kind, DecodeError::Kind::TooLarge);
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
    const Layout layouts[] = {{{}, 512, 5},           {{}, 16, 3},
                              {{}, 512, 5, 9000},     {{}, 64, 20, 9000, 0x0029},
                              {{}, 64, 2, 1 << 20},   {empty, 128, 40},
                              {filled, 128, 40},      {OffsetTable::Extended, 128, 40},
                              {empty, 128, 60, 6000}, {filled, 128, 60, 6000, 0x0029},
                              {filled, 32, 3000},     {empty, 32, 3000}};
    for (const Layout& layout : layouts) expectCheap(layout);
    // The end of the header may fall anywhere in the first blocks: no place may cost another read.
    for (std::size_t extra = 3300; extra < 3800; extra += 2) expectCheap({empty, 64, 4, extra});
}

}  // namespace
}  // namespace cinedisc::test
