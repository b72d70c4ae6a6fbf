#include "discmaker/angiogram/Angiogram.h"
#include "discmaker/encoding/DicomWriter.h"
#include "discmaker/encoding/HuffmanCode.h"
#include "discmaker/encoding/JpegLosslessEncoder.h"
#include "discmaker/encoding/UidFactory.h"
#include "tests/discmaker/DecodedFile.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <sstream>

namespace cinedisc::discmaker {
namespace {

using Samples = std::vector<std::uint16_t>;
using test::DecodedFile;

DecodedFile fileOf(int rows, int columns, int bits, const std::vector<Samples>& frames) {
    DicomWriter writer("1.2.840.10008.1.2.4.70");
    writer.putText(attribute::sopClassUid, "1.2.840.10008.5.1.4.1.1.12.1");
    writer.putText(attribute::sopInstanceUid, uidFor("picture"));
    writer.putText(attribute::patientName, "ÅBC^x");
    writer.putText(attribute::photometricInterpretation, "MONOCHROME2");
    writer.putShort(attribute::samplesPerPixel, 1);
    writer.putShort(attribute::rows, static_cast<std::uint16_t>(rows));
    writer.putShort(attribute::columns, static_cast<std::uint16_t>(columns));
    writer.putShort(attribute::bitsAllocated, bits > 8 ? 16 : 8);
    writer.putShort(attribute::bitsStored, static_cast<std::uint16_t>(bits));
    writer.putShort(attribute::highBit, static_cast<std::uint16_t>(bits - 1));
    writer.putShort(attribute::pixelRepresentation, 0);
    writer.putNumbers(attribute::numberOfFrames, {double(frames.size())});
    writer.putNumbers(attribute::frameTime, {200.0 / 3, -1.5});
    writer.putPointer(attribute::frameIncrementPointer, attribute::frameTime);
    std::vector<DicomWriter::Bytes> encoded;
    for (const auto& frame : frames)
        encoded.push_back(JpegLosslessEncoder(rows, columns, bits).encode(frame));
    writer.putFrames(std::move(encoded));
    std::ostringstream stream;
    writer.write(stream);
    return DecodedFile(stream.str());
}

TEST(JpegLosslessEncoder, DecodesToTheSamePicture) {
    struct Case {
        const char* what;
        int rows, columns, bits, most, smoothness;
    };
    const Case cases[] = {
        {"one pixel", 1, 1, 8, 255, 0},
        {"one row", 1, 33, 8, 255, 0},
        {"one column", 21, 1, 12, 4095, 0},
        {"noise of 8 bits", 37, 53, 8, 255, 0},
        {"noise of 12 bits", 64, 31, 12, 4095, 0},
        {"noise of 16 bits", 40, 40, 16, 65535, 0},
        {"smooth", 50, 60, 8, 255, 12},
        {"all alike", 16, 16, 8, 0, 0},
        {"long steps of 16 bits", 24, 24, 16, 1, 0},
    };
    std::mt19937 random(7);
    for (const auto& example : cases) {
        Samples samples;
        int value = 0;
        for (int i = 0; i < example.rows * example.columns; ++i) {
            value = example.smoothness > 0 ? std::clamp(value + int(random() % 5) - 2, 0, example.most)
                                           : int(random() % unsigned(example.most + 1));
            // Steps of half the range have a category without further bits.
            samples.push_back(static_cast<std::uint16_t>(example.most == 1 ? value * 32768 : value));
        }
        auto file = fileOf(example.rows, example.columns, example.bits, {samples});
        EXPECT_EQ(file.samples(), samples) << example.what;
    }
}

TEST(JpegLosslessEncoder, PacksAnAngiogramFarBelowItsRawSize) {
    Angiogram::Setup setup;
    setup.size = 128;
    Angiogram angiogram(setup);
    const auto samples = angiogram.frame(25);
    EXPECT_LT(JpegLosslessEncoder(128, 128, 8).encode(samples).size(), samples.size() * 2 / 3);
    EXPECT_EQ(fileOf(128, 128, 8, {samples}).samples(), samples);
}

TEST(HuffmanCode, StaysDecodableForTheMostUnevenCounts) {
    HuffmanCode::Counts counts{};
    std::uint32_t before = 1, now = 1;
    for (auto& count : counts) count = std::exchange(now, before + std::exchange(before, now)) * 500;
    const HuffmanCode code(counts);
    std::set<std::string> words;
    double room = 0;
    for (int category = 0; category < HuffmanCode::categories; ++category) {
        const int length = code.length(category);
        ASSERT_GE(length, 1);
        ASSERT_LE(length, 16);
        EXPECT_NE(code.code(category), (1u << length) - 1) << "all ones";
        room += 1.0 / (1 << length);
        std::string word;
        for (int bit = length - 1; bit >= 0; --bit) word += (code.code(category) >> bit & 1) != 0 ? '1' : '0';
        words.insert(word);
    }
    EXPECT_LT(room, 1);
    for (auto word = words.begin(), next = std::next(word); next != words.end(); ++word, ++next)
        EXPECT_FALSE(next->starts_with(*word)) << *word << " begins " << *next;
}

TEST(DicomWriter, WritesWhatAnotherImplementationReads) {
    auto file = fileOf(2, 3, 8, {{1, 2, 3, 4, 5, 6}, {9, 200, 9, 3, 250, 1}, {7, 7, 7, 7, 7, 7}});
    EXPECT_EQ(file.text(DCM_PatientName), "ÅBC^x");
    EXPECT_EQ(file.text(DCM_FrameTime), "66.6666667");
    EXPECT_EQ(file.text(DCM_FrameTime, 1), "-1.5");
    EXPECT_EQ(file.text(DCM_FrameIncrementPointer), "(0018,1063)");
    EXPECT_EQ(file.offsetTable(), file.fragmentOffsets());
    EXPECT_EQ(file.samples(), (Samples{1, 2, 3, 4, 5, 6, 9, 200, 9, 3, 250, 1, 7, 7, 7, 7, 7, 7}));
}

TEST(UidFactory, MakesDistinctIdentifiersWithinTheLimit) {
    std::set<std::string> seen;
    for (int i = 0; i < 500; ++i) {
        const auto uid = uidFor("patient/" + std::to_string(i));
        EXPECT_LE(uid.size(), 64u);
        EXPECT_TRUE(uid.starts_with("2.25.") && uid[5] != '0') << uid;
        EXPECT_TRUE(seen.insert(uid).second) << uid;
    }
    EXPECT_EQ(uidFor("patient/1"), uidFor("patient/1"));
}

}  // namespace
}  // namespace cinedisc::discmaker
