#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace cinedisc::test {
namespace {

using namespace dicom;

constexpr int rows = 24, columns = 32, frames = 5;
constexpr std::size_t pixelCount = rows * columns;
constexpr OffsetTable tables[] = {OffsetTable::Empty, OffsetTable::Filled, OffsetTable::Extended};

DicomBuilder run(OffsetTable table, int count = frames, int fragments = 1) {
    return rleRun(rows, columns, count, table, fragments);
}

void expectFrame(const DicomFile& file, int frame, const Bytes& pixels) {
    const auto decoded = file.decode(frame);
    ASSERT_TRUE(decoded.ok()) << frame << ": " << decoded.error().detail;
    EXPECT_EQ(samplesOf(decoded.value()), pixels) << frame;
}

void expectAllFrames(const DicomBuilder& builder) {
    for (const auto& order : {std::vector{0, 1, 2, 3, 4}, {4, 0, 3, 1, 2}, {3, 4, 0}, {2, 2, 1, 4}}) {
        const auto file = opened(builder);
        ASSERT_EQ(file->frameCount(), frames);
        for (const int frame : order) expectFrame(*file, frame, pixelsOfFrame(frame, pixelCount));
    }
}

TEST(EncapsulatedFrames, AreFoundInAnyOrderWhateverTellsThem) {
    for (const auto table : tables) {
        for (const int fragments : {1, 2, 5}) {
            SCOPED_TRACE(std::to_string(static_cast<int>(table)) + " " + std::to_string(fragments));
            expectAllFrames(run(table, frames, fragments));
        }
        expectFrame(*opened(run(table, 1, 40)), 0, pixelsOfFrame(0, pixelCount));
    }
}

TEST(EncapsulatedFrames, AreFoundInSpiteOfWrongTablesAndStrayFragments) {
    std::vector<Bytes> streams;
    for (int frame = 0; frame < frames; ++frame)
        streams.push_back(rleFrame(pixelsOfFrame(frame, pixelCount)));
    const auto step = static_cast<std::uint32_t>(streams[0].size() + 8);
    DicomBuilder builder = run(OffsetTable::Empty);
    for (const auto& offsets : std::vector<std::vector<std::uint32_t>>{
             {0, step, 2 * step, 3 * step, 4 * step},
             {0, step + 8, 2 * step + 8, 3 * step + 8, 4 * step + 8},
             {28, 28 + step, 28 + 2 * step, 28 + 3 * step, 28 + 4 * step},
             {0, step - 8, 2 * (step - 8), 3 * (step - 8), 4 * (step - 8)},
             {0, 0, 0, 0, 0},
             {0, step, step, 3 * step, 4 * step},
             {0},
             {0, step, 2 * step, 3 * step, 4 * step, 5 * step, 6 * step},
             {4 * step, 3 * step, 2 * step, step, 0},
             {0, 0x10000000, 0x20000000, 0x30000000, 0x40000000},
             {0, step, 2 * step, 3 * step, 0x40000000}}) {
        SCOPED_TRACE(testing::PrintToString(offsets));
        builder.encapsulated(streams, offsets);
        expectAllFrames(builder);
    }
    builder.encapsulated(streams, {}, FilePart::Absent);
    expectAllFrames(builder);
    auto odd = streams, withEmpty = streams;
    odd[1].push_back(std::byte{0});
    builder.encapsulated(odd, {});
    expectAllFrames(builder);
    withEmpty.insert(withEmpty.begin() + 2, Bytes());
    withEmpty.emplace_back();
    builder.encapsulated(withEmpty, {});
    expectAllFrames(builder);
}

TEST(EncapsulatedFrames, CutOffRunShowsTheFramesItHas) {
    const std::size_t frameBytes = rleFrame(Bytes(pixelCount)).size() + 8;
    for (const auto table : tables) {
        Bytes bytes = run(table).build();
        bytes.resize(bytes.size() - 8 - 2 * frameBytes - frameBytes / 2);
        const auto file = opened(bytes);
        EXPECT_EQ(file->frameCount(), table == OffsetTable::Empty ? frames : 2);
        EXPECT_EQ(file->announcedFrameCount(), frames);
        EXPECT_TRUE(file->decode(1).ok());
        for (const int missing : {2, 3, 4}) {
            const auto decoded = file->decode(missing);
            ASSERT_FALSE(decoded.ok());
            EXPECT_EQ(decoded.error().kind, DecodeError::Kind::CutOff);
            EXPECT_EQ(decoded.error().completeFrames, 2);
            EXPECT_EQ(decoded.error().frame, missing);
        }
    }
}

TEST(EncapsulatedFrames, AreCountedByTheFileWhereTheHeaderCannotTell) {
    DicomBuilder endless = run(OffsetTable::Empty), unreadable = run(OffsetTable::Filled);
    endless.text(tags::NumberOfFrames, "IS", "2000000000");
    const auto file = opened(endless);
    EXPECT_LT(file->frameCount(), 1000);
    EXPECT_TRUE(file->decode(4).ok());
    EXPECT_FALSE(file->decode(5).ok());

    unreadable.text(tags::NumberOfFrames, "IS", "1A");
    EXPECT_EQ(opened(unreadable)->frameCount(), frames);
    unreadable.remove(tags::NumberOfFrames);
    expectAllFrames(unreadable);

    // A single picture with an entry for each of its fragments.
    const Bytes pixels = pixelsOfFrame(0, pixelCount), stream = rleFrame(pixels);
    const auto middle = stream.begin() + 70;
    DicomBuilder single = run(OffsetTable::Empty, 1);
    single.remove(tags::NumberOfFrames);
    single.encapsulated({{stream.begin(), middle}, {middle, stream.end()}}, {0, 78});
    EXPECT_EQ(opened(single)->frameCount(), 1);
    expectFrame(*opened(single), 0, pixels);
}

TEST(EncapsulatedFrames, AreToldApartByTheirBeginningsOrElseDealtOutEvenly) {
    const Bytes a = fakeJpeg(100, 1), b = fakeJpeg(200, 2), c = fakeJpeg(60, 3);
    const Bytes rest(50, std::byte{7}), part(40, std::byte{5}), other(40, std::byte{6});
    struct Row {
        std::vector<Bytes> fragments;
        int frames;
        std::vector<std::pair<int, Bytes>> asked;
    };
    const Row table[] = {
        {{a, rest, rest, b, c, rest}, 3, {{2, c + rest}, {0, a + rest + rest}, {1, b}}},
        // The first two begin streams, and only then is seen that not every fragment does.
        {{a, b, rest, c, rest}, 3, {{0, a}, {2, c + rest}, {1, b + rest}}},
        {{a, part, other, part}, 2, {{1, other + part}, {0, a + part}}},
        // Seen only while the second frame, which seemed to begin a stream, is being read.
        {{a, part, c, other, part, other, part, part, other}, 3, {{1, other + part + other}}},
        // Streams without any known beginning: one fragment each.
        {{part, other, part}, 3, {{1, other}}},
        {{a, b}, 1, {{0, a}}},
    };
    for (const Row& row : table) {
        DicomBuilder builder = DicomBuilder::image(64, 64, row.frames);
        const auto file = opened(builder.transferSyntax(jpegSyntax).encapsulated(row.fragments, {}));
        for (const auto& [frame, stream] : row.asked) {
            const auto read = file->readFrame(frame);
            ASSERT_TRUE(read.ok());
            EXPECT_EQ(Bytes(read.value().bytes().begin(), read.value().bytes().end()), stream) << frame;
        }
    }
}

TEST(EncapsulatedFrames, NotEncapsulatedAtAllAreUnderstood) {
    // Six times 128 pixels of the value 9.
    Bytes stream = bytesOf({1, 0, 0, 0, 64}) + Bytes(59);
    for (int i = 0; i < 6; ++i) stream = stream + bytesOf({0x81, 9});
    DicomBuilder bare = DicomBuilder::image(rows, columns), native = bare,
                 hidden = run(OffsetTable::Empty, 1);
    expectFrame(*opened(bare.transferSyntax(rleSyntax).pixels(stream, "OB")), 0,
                Bytes(pixelCount, std::byte{9}));

    const Bytes pixels = pixelsOfFrame(0, pixelCount);
    expectFrame(*opened(native.transferSyntax(jpegSyntax).pixels(pixels, "OB")), 0, pixels);
    // The other way round: a syntax of native pixels is named.
    expectFrame(*opened(hidden.transferSyntax("1.2.840.10008.1.2.1")), 0, pixels);
}

TEST(EncapsulatedFrames, AreWholeWhenTheSyntaxOrElseTheHeaderVouchesForIt) {
    struct Row {
        const char *syntax, *loss;  ///< LossyImageCompression
        bool mayBeLossy;
    };
    for (const Row& row : {Row{"1.2.840.10008.1.2.4.90", "", false},
                           {"1.2.840.10008.1.2.4.90", "00", false},
                           {"1.2.840.10008.1.2.4.90", "01", true},
                           {"1.2.840.10008.1.2.4.91", "", true},
                           {"1.2.840.10008.1.2.4.91", "00", false},
                           {"1.2.840.10008.1.2.4.91", "01", true},
                           {"1.2.840.10008.1.2.4.201", "", false},
                           {"1.2.840.10008.1.2.4.202", "", false},
                           {"1.2.840.10008.1.2.4.203", "", true},
                           {"1.2.3.4 nobody knows", "", true}}) {
        DicomBuilder builder = run(OffsetTable::Empty, 1);
        builder.transferSyntax(row.syntax).text(tags::LossyImageCompression, "CS", row.loss);
        EXPECT_EQ(opened(builder)->pixelFormat().mayBeLossy, row.mayBeLossy) << row.syntax << row.loss;
    }
}

TEST(EncapsulatedFrames, CanBeReadFromSeveralThreads) {
    constexpr int many = 60;
    for (const auto table : tables) {
        const auto file = opened(run(table, many, 2));
        std::vector<std::jthread> threads;
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
        threads.clear();
        EXPECT_EQ(right, 4 * many);
    }
}

}  // namespace
}  // namespace cinedisc::test
