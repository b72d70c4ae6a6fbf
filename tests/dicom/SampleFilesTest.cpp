#include "dicom/DicomFile.h"
#include "dicom/Utf8.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <map>
#include <variant>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// The patient's name and the number of frames, or the kind of error that is told in place of a picture.
using Kind = DecodeError::Kind;
using Outcome = std::variant<std::string, Kind>;
const std::map<std::string, Outcome> known{
    {"MR_truncated.dcm", Kind::CutOff},
    {"no_meta.dcm", Kind::NotDicom},
    {"meta_missing_tsyntax.dcm", Kind::Broken},
    {"ExplVR_LitEndNoMeta.dcm", Kind::NoPicture},
    {"chrKoreanMulti.dcm", Kind::NoPicture},
    {"chrH31.dcm", "Yamada^Tarou=山田^太郎=やまだ^たろう, 1"},
    {"chrH32.dcm", "ﾔﾏﾀﾞ^ﾀﾛｳ=山田^太郎=やまだ^たろう, 1"},
    {"chrX1.dcm", "Wang^XiaoDong=王^小東=, 1"},
    {"chrX2.dcm", "Wang^XiaoDong=王^小东=, 1"},
    {"chrRuss.dcm", "Люкceмбypг, 1"},
    {"IM00001.fragmented_no_bot_jpeg_baseline.50.dcm", "US Echo, 8"},
    {"sm_image_jpegls_nobot.dcm", "Test^Patient, 25"},
    {"badVR.dcm", "Lastname^Firstname, 15"},
};

Outcome outcomeOf(const Result<std::shared_ptr<const DicomFile>>& file) {
    if (!file) return file.error().kind;
    if (const auto& error = file.value()->pictureError()) return error->kind;
    return file.value()->text({0x0010, 0x0010}) + ", " + std::to_string(file.value()->frameCount());
}

TEST(SampleFiles, ShowTheirFirstAndLastFrameOrSayWhyNot) {
    for (const auto& path : samplePaths()) {
        SCOPED_TRACE(path.filename().string());
        const auto file = DicomFile::open(path.string());
        const auto expected = known.find(path.filename().string());
        if (expected != known.end()) {
            EXPECT_EQ(outcomeOf(file), expected->second);
        }
        if (expected != known.end() && (!file || file.value()->frameCount() == 0)) continue;
        ASSERT_TRUE(file.ok()) << file.error().detail;
        const DicomFile& opened = *file.value();
        ASSERT_GT(opened.frameCount(), 0) << opened.pictureError()->detail;
        for (const int frame : {0, opened.frameCount() - 1}) {
            const auto decoded = opened.decode(frame);
            ASSERT_TRUE(decoded.ok()) << decoded.error().detail;
            EXPECT_EQ(decoded.value().rows, opened.pixelFormat().rows);
            EXPECT_EQ(decoded.value().columns, opened.pixelFormat().columns);
        }
        EXPECT_TRUE(isValidUtf8(headerText(opened)));
    }
}

}  // namespace
}  // namespace cinedisc::test
