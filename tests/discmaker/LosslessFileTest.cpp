#include "discmaker/DiscError.h"
#include "discmaker/LosslessFile.h"
#include "tests/discmaker/DiscFiles.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <map>
#include <random>

namespace cinedisc::discmaker {
namespace {

using Samples = std::vector<std::uint16_t>;

class LosslessFileTest : public testing::Test {
  protected:
    std::shared_ptr<const dicom::DicomFile> written(const LosslessFile::Format& format,
                                                    const std::vector<Samples>& frames) {
        LosslessFile file(format);
        file.put(DCM_SOPInstanceUID, EVR_UI, uidFor("picture"));
        file.put(DCM_PatientName, EVR_PN, "ÅBC^x");
        file.put(DCM_NumberOfFrames, EVR_IS, {double(frames.size())});
        file.put(DCM_FrameTime, EVR_DS, {200.0 / 3, -1.5});
        file.put(DCM_FrameIncrementPointer, EVR_AT, "(0018,1063)");
        for (const auto& frame : frames) file.addFrame(LosslessFile::encoded(format, frame));
        const auto path = folder_.path().toStdString() + "/picture.dcm";
        file.write(path);
        return dicom::DicomFile::open(path).value();
    }

    QTemporaryDir folder_;
};

TEST_F(LosslessFileTest, KeepsEverySample) {
    std::mt19937 random(7);
    for (const auto& [rows, columns, bits] :
         {std::tuple{1, 1, 8}, {1, 33, 8}, {21, 1, 12}, {37, 53, 8}, {64, 31, 12}}) {
        std::vector<Samples> frames(3, Samples(static_cast<std::size_t>(rows * columns)));
        for (auto& frame : frames)
            for (auto& sample : frame) sample = static_cast<std::uint16_t>(random() % (1u << bits));
        const auto file = written({rows, columns, bits}, frames);
        ASSERT_EQ(file->frameCount(), 3);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(test::samplesOf(*file, i), frames[static_cast<std::size_t>(i)])
                << rows << " x " << columns;
    }
}

TEST_F(LosslessFileTest, NeedsNoDictionaryToSayWhatItHolds) {
    const auto file = written({1, 2, 12}, {{1, 4095}});
    EXPECT_EQ(file->transferSyntax(), "1.2.840.10008.1.2.4.70");
    const std::map<std::string, std::pair<std::string, std::string>> expected{
        {"FileMetaInformationVersion", {"OB", "00 01"}},
        {"MediaStorageSOPInstanceUID", {"UI", uidFor("picture")}},
        {"SpecificCharacterSet", {"CS", "ISO_IR 192"}},
        {"PatientName", {"PN", "ÅBC^x"}},
        {"FrameTime", {"DS", "66.6666667\\-1.5"}},
        {"FrameIncrementPointer", {"AT", "(0018,1063)"}},
        {"BitsAllocated", {"US", "16"}},
        {"BitsStored", {"US", "12"}},
        {"HighBit", {"US", "11"}},
    };
    std::size_t found = 0;
    for (const auto& line : describeHeader(*file)) {
        const auto entry = expected.find(line.keyword);
        if (entry == expected.end()) continue;
        EXPECT_EQ(std::pair(line.vr, line.value), entry->second) << line.keyword;
        ++found;
    }
    EXPECT_EQ(found, expected.size());
}

TEST_F(LosslessFileTest, TellsWhenItCannotBeWritten) {
    EXPECT_THROW(LosslessFile({1, 1, 8}).write(folder_.path().toStdString()), DiscError);
}

TEST(UidFor, IsTheNamesDigestAsADecimalNumber) {
    EXPECT_EQ(uidFor("patient/1"), "2.25.326828722255908054846114447225414624549");
    EXPECT_EQ(uidFor("patient/22"), "2.25.741685636451064761532789966783045587") << "no zero in front";
}

}  // namespace
}  // namespace cinedisc::discmaker
