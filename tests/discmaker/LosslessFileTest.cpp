#include "discmaker/DiscError.h"
#include "discmaker/LosslessFile.h"
#include "tests/discmaker/DecodedFile.h"
#include "tests/discmaker/DiscFiles.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <random>
#include <set>

namespace cinedisc::discmaker {
namespace {

using Samples = std::vector<std::uint16_t>;

class LosslessFileTest : public testing::Test {
  protected:
    /// The frames as another reader finds them in the file.
    test::DecodedFile written(const LosslessFile::Format& format, const std::vector<Samples>& frames) {
        LosslessFile file(format);
        file.put(DCM_SOPInstanceUID, EVR_UI, uidFor("picture"));
        file.put(DCM_PatientName, EVR_PN, "ÅBC^x");
        file.put(DCM_NumberOfFrames, EVR_IS, {double(frames.size())});
        file.put(DCM_FrameTime, EVR_DS, {200.0 / 3, -1.5});
        file.put(DCM_FrameIncrementPointer, EVR_AT, "(0018,1063)");
        for (const auto& frame : frames) file.addFrame(LosslessFile::encoded(format, frame));
        const auto path = folder_.path().toStdString() + "/picture.dcm";
        file.write(path);
        return test::DecodedFile(test::contentOf(path));
    }

    QTemporaryDir folder_;
};

TEST_F(LosslessFileTest, KeepsEverySample) {
    struct Case {
        LosslessFile::Format format;
        int most;
    };
    std::mt19937 random(7);
    for (const auto& [format, most] :
         {Case{{1, 1, 8}, 255}, Case{{1, 33, 8}, 255}, Case{{21, 1, 12}, 4095}, Case{{37, 53, 8}, 255},
          Case{{64, 31, 12}, 4095}, Case{{9, 9, 8}, 0}}) {
        Samples samples(static_cast<std::size_t>(format.rows * format.columns));
        for (auto& sample : samples) sample = static_cast<std::uint16_t>(random() % unsigned(most + 1));
        auto file = written(format, {samples});
        EXPECT_EQ(file.samples(), samples) << format.rows << " x " << format.columns;
        EXPECT_EQ(file.number(DCM_Rows), format.rows);
        EXPECT_EQ(file.number(DCM_HighBit), format.bits - 1);
    }
}

TEST_F(LosslessFileTest, IsReadByOthersAsItWasMeant) {
    auto file = written({2, 3, 8}, {{1, 2, 3, 4, 5, 6}, {9, 200, 9, 3, 250, 1}, {7, 7, 7, 7, 7, 7}});
    EXPECT_EQ(file.text(DCM_PatientName), "ÅBC^x");
    EXPECT_EQ(file.text(DCM_SpecificCharacterSet), "ISO_IR 192");
    EXPECT_EQ(file.text(DCM_FrameTime), "66.6666667");
    EXPECT_EQ(file.text(DCM_FrameTime, 1), "-1.5");
    EXPECT_EQ(file.text(DCM_FrameIncrementPointer), "(0018,1063)");
    EXPECT_EQ(file.offsetTable(), file.fragmentOffsets());
    EXPECT_EQ(file.samples(), (Samples{1, 2, 3, 4, 5, 6, 9, 200, 9, 3, 250, 1, 7, 7, 7, 7, 7, 7}));
}

TEST_F(LosslessFileTest, TellsWhenItCannotBeWritten) {
    EXPECT_THROW(LosslessFile({1, 1, 8}).write(folder_.path().toStdString()), DiscError);
}

TEST(UidFor, MakesDistinctIdentifiersWithinTheLimit) {
    std::set<std::string> seen;
    for (int i = 0; i < 500; ++i) {
        const auto uid = uidFor("patient/" + std::to_string(i));
        EXPECT_LE(uid.size(), 64u);
        EXPECT_TRUE(uid.starts_with("2.25.") && uid[5] != '0') << uid;
        EXPECT_TRUE(seen.insert(uid).second) << uid;
    }
    EXPECT_EQ(uidFor("patient/1"), "2.25.326828722255908054846114447225414624549");
}

}  // namespace
}  // namespace cinedisc::discmaker
