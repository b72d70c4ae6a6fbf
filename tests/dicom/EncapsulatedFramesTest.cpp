#include "dicom/DicomFile.h"
#include "dicom/EncapsulatedFrames.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace cinedisc::test {
namespace {

using namespace dicom;

constexpr int rows = 24, columns = 32, frames = 5;
constexpr std::size_t pixelCount = rows * columns;

void expectAllFrames(const DicomBuilder& builder, const std::vector<int>& order) {
    const auto file = opened(builder);
    ASSERT_EQ(file->frameCount(), frames);
    for (const int frame : order) {
        const auto decoded = file->decode(frame);
        ASSERT_TRUE(decoded.ok()) << frame << ": " << decoded.error().message;
        EXPECT_EQ(samplesOf(decoded.value()), pixelsOfFrame(frame, pixelCount)) << frame;
    }
}

TEST(EncapsulatedFrames, AreFoundInAnyOrderWhateverTellsThem) {
    for (const auto table : {OffsetTable::Empty, OffsetTable::Filled, OffsetTable::Extended}) {
        for (const int fragments : {1, 2, 5}) {
            const auto builder = rleRun(rows, columns, frames, table, fragments);
            for (const auto& order :
                 {std::vector{0, 1, 2, 3, 4}, std::vector{4, 0, 3, 1, 2}, std::vector{2, 2, 1, 4}}) {
                SCOPED_TRACE(std::to_string(static_cast<int>(table)) + " " + std::to_string(fragments));
                expectAllFrames(builder, order);
            }
        }
    }
}

/// A run of five frames, each of one fragment, with this offset table.
DicomBuilder runWithTable(const std::vector<std::uint32_t>& offsets) {
    DicomBuilder builder = rleRun(rows, columns, frames, OffsetTable::Empty);
    std::vector<Bytes> fragments;
    for (int frame = 0; frame < frames; ++frame)
        fragments.push_back(rleFrame(pixelsOfFrame(frame, pixelCount)));
    builder.encapsulated(fragments, offsets);
    return builder;
}

TEST(EncapsulatedFrames, WrongOffsetTablesAreSeenThrough) {
    const auto step = static_cast<std::uint32_t>(rleFrame(Bytes(pixelCount)).size() + 8);
    const std::pair<const char*, std::vector<std::uint32_t>> tables[] = {
        {"right", {0, step, 2 * step, 3 * step, 4 * step}},
        {"behind the item header", {0, step + 8, 2 * step + 8, 3 * step + 8, 4 * step + 8}},
        {"from the value's start", {28, 28 + step, 28 + 2 * step, 28 + 3 * step, 28 + 4 * step}},
        {"without item headers", {0, step - 8, 2 * (step - 8), 3 * (step - 8), 4 * (step - 8)}},
        {"all zero", {0, 0, 0, 0, 0}},
        {"one entry", {0}},
        {"too many entries", {0, step, 2 * step, 3 * step, 4 * step, 5 * step, 6 * step}},
        {"falling", {4 * step, 3 * step, 2 * step, step, 0}},
        {"beyond the file", {0, 0x10000000, 0x20000000, 0x30000000, 0x40000000}},
        {"last beyond the file", {0, step, 2 * step, 3 * step, 0x40000000}},
    };
    for (const auto& [name, offsets] : tables) {
        SCOPED_TRACE(name);
        expectAllFrames(runWithTable(offsets), {0, 1, 2, 3, 4});
        expectAllFrames(runWithTable(offsets), {3, 4, 0});
    }
}

TEST(EncapsulatedFrames, SingleFrameTakesAllItsFragments) {
    const Bytes stream = rleFrame(pixelsOfFrame(0, pixelCount));
    for (const auto table : {OffsetTable::Empty, OffsetTable::Filled}) {
        DicomBuilder builder = DicomBuilder::image(rows, columns);
        builder.transferSyntax(rleSyntax).encapsulatedFrames({stream}, table, 40);
        const auto decoded = opened(builder)->decode(0);
        ASSERT_TRUE(decoded.ok()) << decoded.error().message;
        EXPECT_EQ(samplesOf(decoded.value()), pixelsOfFrame(0, pixelCount));
    }
}

TEST(EncapsulatedFrames, StrayFragmentsAndMissingEndsAreSurvived) {
    std::vector<Bytes> streams;
    for (int frame = 0; frame < frames; ++frame)
        streams.push_back(rleFrame(pixelsOfFrame(frame, pixelCount)));
    const std::vector<int> order{0, 4, 2};

    DicomBuilder builder = rleRun(rows, columns, frames, OffsetTable::Empty);
    builder.encapsulated(streams, {}, FilePart::Absent);
    expectAllFrames(builder, order);

    auto withEmpty = streams;
    withEmpty.insert(withEmpty.begin() + 2, Bytes());
    withEmpty.emplace_back();
    builder.encapsulated(withEmpty, {});
    expectAllFrames(builder, order);

    auto odd = streams;
    odd[1].push_back(std::byte{0});
    builder.encapsulated(odd, {});
    expectAllFrames(builder, order);
}

struct Cut {
    const char* name;
    OffsetTable table;
    int countable;  ///< frames that the file's length leaves
};

TEST(EncapsulatedFrames, CutOffRunShowsTheFramesItHas) {
    const std::size_t frameBytes = rleFrame(Bytes(pixelCount)).size() + 8;
    for (const Cut& cut : {Cut{"empty", OffsetTable::Empty, frames}, Cut{"filled", OffsetTable::Filled, 2},
                           Cut{"extended", OffsetTable::Extended, 2}}) {
        SCOPED_TRACE(cut.name);
        Bytes bytes = rleRun(rows, columns, frames, cut.table).build();
        bytes.resize(bytes.size() - 8 - 2 * frameBytes - frameBytes / 2);
        const auto file = opened(bytes);
        EXPECT_EQ(file->frameCount(), cut.countable);
        EXPECT_EQ(file->announcedFrameCount(), frames);
        EXPECT_TRUE(file->decode(1).ok());
        for (const int missing : {2, 3, 4}) {
            const auto decoded = file->decode(missing);
            ASSERT_FALSE(decoded.ok());
            EXPECT_EQ(decoded.error().kind, DecodeError::Kind::CutOff);
            EXPECT_EQ(decoded.error().message, "The file is cut off: 2 of 5 frames can be shown");
            EXPECT_EQ(decoded.error().frame, missing);
        }
    }
}

TEST(EncapsulatedFrames, AnnouncedCountsBeyondTheFileAreBounded) {
    DicomBuilder builder = rleRun(rows, columns, frames, OffsetTable::Empty);
    builder.text(tags::NumberOfFrames, "IS", "2000000000");
    const auto file = opened(builder);
    EXPECT_LT(file->frameCount(), 1000);
    EXPECT_TRUE(file->decode(4).ok());
    EXPECT_FALSE(file->decode(5).ok());

    DicomBuilder unreadable = rleRun(rows, columns, frames, OffsetTable::Filled);
    unreadable.text(tags::NumberOfFrames, "IS", "1A");
    EXPECT_EQ(opened(unreadable)->frameCount(), frames);
}

TEST(EncapsulatedFrames, OfHeadersWithoutACountAreThoseOfTheTable) {
    DicomBuilder run = rleRun(rows, columns, frames, OffsetTable::Filled);
    run.remove(tags::NumberOfFrames);
    EXPECT_EQ(opened(run)->frameCount(), frames);
    EXPECT_TRUE(opened(run)->decode(frames - 1).ok());

    // A single picture with an entry for each of its fragments.
    const Bytes pixels = pixelsOfFrame(0, rows * columns), stream = rleFrame(pixels);
    const auto middle = stream.begin() + 70;
    DicomBuilder single = rleRun(rows, columns, 1, OffsetTable::Empty);
    single.remove(tags::NumberOfFrames);
    single.encapsulated({{stream.begin(), middle}, {middle, stream.end()}}, {0, 78});
    EXPECT_EQ(opened(single)->frameCount(), 1);
    EXPECT_EQ(samplesOf(opened(single)->decode(0).value()), pixels);
}

/// The frames of pixel data of these fragments, as bytes.
class Fragments {
  public:
    Fragments(const std::vector<Bytes>& fragments, int announced) {
        DicomBuilder builder = DicomBuilder::image(64, 64, announced);
        builder.transferSyntax(jpegSyntax).encapsulated(fragments, {});
        bytes_ = std::make_shared<MemoryByteSource>(builder.build());
        const auto file = DicomFile::open(bytes_).value();
        const Element* element = file->header().find(tags::PixelData);
        const PixelElement pixels{element->tag, element->valueRepresentation, element->offset,
                                  element->length, true};
        frames_ = std::make_unique<EncapsulatedFrames>(
            bytes_, pixels, file->header(),
            EncapsulatedFrames::Expectation{announced, 4096, Compression::Jpeg});
    }

    Bytes read(int frame) const {
        const auto bytes = frames_->read(frame);
        if (!bytes) return {};
        return {bytes.value().bytes().begin(), bytes.value().bytes().end()};
    }

  private:
    std::shared_ptr<const ByteSource> bytes_;
    std::unique_ptr<EncapsulatedFrames> frames_;
};

Bytes operator+(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST(EncapsulatedFrames, BeginWhereCodeStreamsBeginWhenFragmentsOutnumberThem) {
    const Bytes a = fakeJpeg(100, 1), b = fakeJpeg(200, 2), c = fakeJpeg(60, 3), rest(50, std::byte{7});
    const Fragments uneven({a, rest, rest, b, c, rest}, 3);
    EXPECT_EQ(uneven.read(2), c + rest);
    EXPECT_EQ(uneven.read(0), a + rest + rest);
    EXPECT_EQ(uneven.read(1), b);
    // The first two begin streams, and only then is seen that not every fragment does.
    const Fragments misleading({a, b, rest, c, rest}, 3);
    EXPECT_EQ(misleading.read(0), a);
    EXPECT_EQ(misleading.read(2), c + rest);
    EXPECT_EQ(misleading.read(1), b + rest);
}

TEST(EncapsulatedFrames, AreDealtOutEvenlyWhenNothingTellsThemApart) {
    const Bytes first = fakeJpeg(100, 1), part(40, std::byte{5}), other(40, std::byte{6});
    const Fragments fragments({first, part, other, part}, 2);
    EXPECT_EQ(fragments.read(1), other + part);
    EXPECT_EQ(fragments.read(0), first + part);
    // Seen only while the second frame, which seemed to begin a stream, is being read.
    const Fragments late({first, part, fakeJpeg(30, 2), other, part, other, part, part, other}, 3);
    EXPECT_EQ(late.read(1), other + part + other);
    // Streams without any known beginning: one fragment each.
    const Fragments unknown({part, other, part}, 3);
    EXPECT_EQ(unknown.read(1), other);
}

TEST(EncapsulatedFrames, ASecondStreamEndsASingleFrame) {
    const Bytes a = fakeJpeg(100, 1), b = fakeJpeg(200, 2);
    EXPECT_EQ(Fragments({a, b}, 1).read(0), a);
}

TEST(EncapsulatedFrames, NotEncapsulatedAtAllIsUnderstood) {
    Bytes stream(64);
    stream[0] = std::byte{1};
    stream[4] = std::byte{64};
    // Six times 128 pixels of the value 9.
    for (int i = 0; i < 6; ++i) stream.insert(stream.end(), {std::byte{0x81}, std::byte{9}});
    DicomBuilder bare = DicomBuilder::image(rows, columns);
    bare.transferSyntax(rleSyntax).pixels(stream, "OB");
    const auto unwrapped = opened(bare)->decode(0);
    ASSERT_TRUE(unwrapped.ok()) << unwrapped.error().message;
    EXPECT_EQ(samplesOf(unwrapped.value()), Bytes(pixelCount, std::byte{9}));

    DicomBuilder native = DicomBuilder::image(rows, columns);
    native.transferSyntax(jpegSyntax).pixels(pixelsOfFrame(0, pixelCount), "OB");
    const auto frame = opened(native)->decode(0);
    ASSERT_TRUE(frame.ok()) << frame.error().message;
    EXPECT_EQ(samplesOf(frame.value()), pixelsOfFrame(0, pixelCount));

    DicomBuilder hidden = rleRun(rows, columns, 1, OffsetTable::Empty);
    Bytes bytes = hidden.build();
    const Bytes named = bytesOf(std::string(rleSyntax) + '\0'),
                plain = bytesOf(std::string("1.2.840.10008.1.2.1"));
    auto at = std::search(bytes.begin(), bytes.end(), named.begin(), named.end());
    std::copy(plain.begin(), plain.end(), at);
    const auto sniffed = opened(bytes)->decode(0);
    ASSERT_TRUE(sniffed.ok()) << sniffed.error().message;
    EXPECT_EQ(samplesOf(sniffed.value()), pixelsOfFrame(0, pixelCount));
}

TEST(EncapsulatedFrames, AreWholeWhenTheSyntaxOrElseTheHeaderVouchesForIt) {
    struct Case {
        const char *syntax, *loss;  ///< LossyImageCompression
        bool mayBeLossy;
    };
    const Case cases[] = {
        {"1.2.840.10008.1.2.4.90", "", false},   {"1.2.840.10008.1.2.4.90", "00", false},
        {"1.2.840.10008.1.2.4.90", "01", true},  {"1.2.840.10008.1.2.4.91", "", true},
        {"1.2.840.10008.1.2.4.91", "00", false}, {"1.2.840.10008.1.2.4.91", "01", true},
        {"1.2.840.10008.1.2.4.201", "", false},  {"1.2.840.10008.1.2.4.202", "", false},
        {"1.2.840.10008.1.2.4.203", "", true},   {"1.2.3.4 nobody knows", "", true},
    };
    for (const Case& c : cases) {
        DicomBuilder builder = rleRun(rows, columns, 1, OffsetTable::Empty);
        builder.transferSyntax(c.syntax).text(tags::LossyImageCompression, "CS", c.loss);
        EXPECT_EQ(opened(builder)->pixelFormat().mayBeLossy, c.mayBeLossy) << c.syntax << " " << c.loss;
    }
}

TEST(EncapsulatedFrames, CanBeReadFromSeveralThreads) {
    constexpr int many = 60;
    for (const auto table : {OffsetTable::Empty, OffsetTable::Filled}) {
        const auto file = opened(rleRun(rows, columns, many, table, 2));
        std::vector<std::thread> threads;
        std::atomic<int> right = 0;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&file, &right, thread] {
                for (int i = 0; i < many; ++i) {
                    const int frame = (i * (thread % 2 ? 7 : 1) + thread * 11) % many;
                    const auto decoded = file->decode(frame);
                    if (decoded && samplesOf(decoded.value()) == pixelsOfFrame(frame, pixelCount)) ++right;
                }
            });
        }
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(right, 4 * many);
    }
}

}  // namespace
}  // namespace cinedisc::test
