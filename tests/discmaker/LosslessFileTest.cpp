#include "discmaker/LosslessFile.h"
#include "tests/discmaker/DiscFiles.h"

#include <QTemporaryDir>

#include <random>

namespace cinedisc::discmaker {
namespace {

TEST(LosslessFile, KeepsEverySample) {
    const QTemporaryDir folder;
    const auto path = folder.path().toStdString() + "/picture.dcm";
    std::mt19937 random(7);
    for (const auto& [rows, columns, bits] :
         {std::tuple{1, 1, 8}, {1, 33, 8}, {21, 1, 12}, {37, 53, 8}, {64, 31, 12}}) {
        std::vector<std::vector<std::uint16_t>> frames(3);
        const LosslessFile::Format format{rows, columns, bits};
        LosslessFile picture(format);
        picture.put(DCM_NumberOfFrames, EVR_IS, "3");
        for (auto& frame : frames) {
            for (int i = 0; i < rows * columns; ++i)
                frame.push_back(static_cast<std::uint16_t>(random() % (1u << bits)));
            picture.addFrame(LosslessFile::encoded(format, frame));
        }
        picture.write(path);
        const auto file = dicom::DicomFile::open(path).value();
        for (int i = 0; i < 3; ++i) EXPECT_EQ(test::samplesOf(*file, i), frames[std::size_t(i)]) << columns;
    }
    EXPECT_EQ(uidFor("patient/1"), "2.25.326828722255908054846114447225414624549");
    EXPECT_EQ(uidFor("patient/22"), "2.25.741685636451064761532789966783045587") << "no zero in front";
}

}  // namespace
}  // namespace cinedisc::discmaker
