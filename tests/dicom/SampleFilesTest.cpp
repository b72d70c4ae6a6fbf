#include "dicom/DicomFile.h"
#include "dicom/Utf8.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <map>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// What is told in place of a picture, for those that show none.
const std::map<std::string, std::string> notices{
    {"MR_truncated.dcm", "The file is cut off: its picture is not complete"},
    {"no_meta.dcm", "This is not a DICOM file"},
    {"meta_missing_tsyntax.dcm", "The file does not say how its picture is to be read"},
    {"ExplVR_LitEndNoMeta.dcm", "This file holds no picture"},
    {"chrKoreanMulti.dcm", "This file holds no picture"},
};

TEST(SampleFiles, ShowTheirFirstAndLastFrameOrSayWhyNot) {
    for (const auto& path : samplePaths()) {
        SCOPED_TRACE(path.filename().string());
        const auto expected = notices.find(path.filename().string());
        const auto file = DicomFile::open(path.string());
        if (expected != notices.end()) {
            ASSERT_TRUE(!file || file.value()->frameCount() == 0);
            EXPECT_EQ(file ? file.value()->pictureError()->message : file.error().message, expected->second);
            continue;
        }
        ASSERT_TRUE(file.ok()) << file.error().message;
        const DicomFile& opened = *file.value();
        ASSERT_GT(opened.frameCount(), 0) << opened.pictureError()->message;
        EXPECT_FALSE(opened.pictureError().has_value());
        for (const int frame : {0, opened.frameCount() - 1}) {
            const auto decoded = opened.decode(frame);
            ASSERT_TRUE(decoded.ok()) << decoded.error().message;
            EXPECT_EQ(decoded.value().rows, opened.pixelFormat().rows);
            EXPECT_EQ(decoded.value().columns, opened.pixelFormat().columns);
        }
        EXPECT_TRUE(isValidUtf8(headerText(opened)));
    }
}

struct Fact {
    const char* file;
    std::string (*of)(const DicomFile&);
    const char* value;
};

std::string firstWindow(const DicomFile& file) {
    const auto windows = file.greyTransform(0).windows;
    return windows.empty() ? "none" : std::to_string(static_cast<int>(windows[0].width));
}

TEST(SampleFiles, AreUnderstoodInTheirPeculiarities) {
    const auto patient = [](const DicomFile& file) { return file.text({0x0010, 0x0010}); };
    const auto frames = [](const DicomFile& file) { return std::to_string(file.frameCount()); };
    const Fact facts[] = {
        {"chrH31.dcm", patient, "Yamada^Tarou=山田^太郎=やまだ^たろう"},
        {"chrH32.dcm", patient, "ﾔﾏﾀﾞ^ﾀﾛｳ=山田^太郎=やまだ^たろう"},
        {"chrX1.dcm", patient, "Wang^XiaoDong=王^小東="},
        {"chrX2.dcm", patient, "Wang^XiaoDong=王^小东="},
        {"chrRuss.dcm", patient, "Люкceмбypг"},
        {"IM00001.fragmented_no_bot_jpeg_baseline.50.dcm", frames, "8"},
        {"sm_image_jpegls_nobot.dcm", frames, "25"},
        {"badVR.dcm", frames, "15"},
        {"MR_small_implicit.dcm", firstWindow, "1600"},
        {"MR_small_expb.dcm", firstWindow, "1600"},
        {"CT0012.not_fragmented_no_bot_rle.dcm", firstWindow, "102"},
        {"vlut_04.dcm",
         [](const DicomFile& file) { return std::to_string(file.greyTransform(0).voiLuts.size()); }, "1"},
        {"OutOfBoundsOverlay.dcm",
         [](const DicomFile& file) { return std::to_string(file.overlays().size()); }, "2"},
        {"CR-ModalitySequenceLUT.dcm",
         [](const DicomFile& file) { return std::to_string(file.greyTransform(0).modalityLut.has_value()); },
         "1"},
        {"TestPattern_Palette_16.dcm",
         [](const DicomFile& file) { return std::to_string(file.palette()->red.entries.size()); }, "256"},
    };
    for (const auto& path : samplePaths())
        for (const Fact& fact : facts)
            if (path.filename() == fact.file) {
                EXPECT_EQ(fact.of(*DicomFile::open(path.string()).value()), fact.value) << fact.file;
            }
}

}  // namespace
}  // namespace cinedisc::test
