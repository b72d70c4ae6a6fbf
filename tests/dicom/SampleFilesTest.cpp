#include "dicom/DicomFile.h"
#include "dicom/Utf8.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <map>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// What is told in place of a picture, or else the patient's name and the number of frames.
const std::map<std::string, std::string> known{
    {"MR_truncated.dcm", "The file is cut off: its picture is not complete"},
    {"no_meta.dcm", "This is not a DICOM file"},
    {"meta_missing_tsyntax.dcm", "The file does not say how its picture is to be read"},
    {"ExplVR_LitEndNoMeta.dcm", "This file holds no picture"},
    {"chrKoreanMulti.dcm", "This file holds no picture"},
    {"chrH31.dcm", "Yamada^Tarou=山田^太郎=やまだ^たろう, 1"},
    {"chrH32.dcm", "ﾔﾏﾀﾞ^ﾀﾛｳ=山田^太郎=やまだ^たろう, 1"},
    {"chrX1.dcm", "Wang^XiaoDong=王^小東=, 1"},
    {"chrX2.dcm", "Wang^XiaoDong=王^小东=, 1"},
    {"chrRuss.dcm", "Люкceмбypг, 1"},
    {"IM00001.fragmented_no_bot_jpeg_baseline.50.dcm", ", 8"},
    {"sm_image_jpegls_nobot.dcm", ", 25"},
    {"badVR.dcm", ", 15"},
};

std::string summary(const Result<std::shared_ptr<const DicomFile>>& file) {
    if (!file) return file.error().message;
    if (const auto& error = file.value()->pictureError()) return error->message;
    return file.value()->text({0x0010, 0x0010}) + ", " + std::to_string(file.value()->frameCount());
}

TEST(SampleFiles, ShowTheirFirstAndLastFrameOrSayWhyNot) {
    for (const auto& path : samplePaths()) {
        SCOPED_TRACE(path.filename().string());
        const auto file = DicomFile::open(path.string());
        const auto expected = known.find(path.filename().string());
        if (expected != known.end()) {
            EXPECT_TRUE(summary(file).ends_with(expected->second)) << summary(file);
        }
        if (expected != known.end() && (!file || file.value()->frameCount() == 0)) continue;
        ASSERT_TRUE(file.ok()) << file.error().message;
        const DicomFile& opened = *file.value();
        ASSERT_GT(opened.frameCount(), 0) << opened.pictureError()->message;
        for (const int frame : {0, opened.frameCount() - 1}) {
            const auto decoded = opened.decode(frame);
            ASSERT_TRUE(decoded.ok()) << decoded.error().message;
            EXPECT_EQ(decoded.value().rows, opened.pixelFormat().rows);
            EXPECT_EQ(decoded.value().columns, opened.pixelFormat().columns);
        }
        EXPECT_TRUE(isValidUtf8(headerText(opened)));
    }
}

}  // namespace
}  // namespace cinedisc::test
