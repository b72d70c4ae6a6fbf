#include "catalogue/CatalogueReader.h"
#include "discmaker/CatalogueText.h"
#include "discmaker/DemoDisc.h"
#include "discmaker/DemoFile.h"
#include "discmaker/HeaderReader.h"
#include "platform/Folder.h"
#include "tests/discmaker/DiscFiles.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

namespace fs = std::filesystem;

fs::path pathOf(const QTemporaryDir& folder) { return folder.path().toStdString(); }

/// Compares a catalogue level with a folder level, `depth` levels of folders below; the lowest one holds
/// files.
void expectAgreement(const CatalogueNode& node, const Folder& folder, int depth) {
    const auto count = std::distance(node.nextLevelBegin(), node.nextLevelEnd());
    const auto items = folder.Items();
    ASSERT_EQ(items.Count(), count) << folder.Title().toStdString();
    EXPECT_FALSE(node.first().text().isEmpty());
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(items.Item(i).IsFolder(), depth > 0);
        if (depth > 0) expectAgreement(node.nextLevelBegin()[i], items.Item(i).GetFolder(), depth - 1);
    }
}

class DemoDiscTest : public testing::Test {
  protected:
    DemoDiscTest() { makeDemoDisc(pathOf(disc_), "Demo", {}, DemoSize::Tiny); }

    QTemporaryDir disc_;
};

TEST_F(DemoDiscTest, HasACatalogueThatAgreesWithItsFolders) {
    const auto root = readCatalogue(disc_.filePath("CD.xml"));
    ASSERT_TRUE(root);
    const auto patients = Folder::NameSpace(disc_.filePath("Dicom"));
    ASSERT_EQ(patients.Items().Count(), 4);
    EXPECT_TRUE(patients.Items().Item(3).Path().endsWith("Patient003"));
    ASSERT_EQ(root->children().size(), 4u);
    for (int i = 0; i < 4; ++i)
        expectAgreement(root->children()[static_cast<std::size_t>(i)], patients.Items().Item(i).GetFolder(),
                        2);
    const auto xml = test::contentOf(pathOf(disc_) / "CD.xml");
    for (const char* amount : {"(1 run)", "(5 runs)", "(7 runs)", "(3 images)"})
        EXPECT_NE(xml.find(amount), std::string::npos) << "strips of every length: " << amount;
    EXPECT_EQ(std::ranges::count_if(demoImages(DemoSize::Full),
                                    [](const DemoImage& image) {
                                        return image.setup.size == 1024 && image.setup.bits == 12 &&
                                               image.frames == 60;
                                    }),
              1);
    const auto first = test::filesBelow(pathOf(disc_));
    makeDemoDisc(pathOf(disc_), "Demo", {}, DemoSize::Tiny);
    EXPECT_EQ(test::filesBelow(pathOf(disc_)), first) << "the same every time";
    EXPECT_EQ(root->children()[0].first().text(), "LINDSTRÖM, ÅSA  (CD-100417)");
    EXPECT_EQ(root->children()[1].first().text(), "КОВАЛЁВА, ОЛЬГА ПЕТРОВНА  (CD-100523)");
}

TEST_F(DemoDiscTest, SaysTheSameInCatalogueAndHeaders) {
    const auto series = pathOf(disc_) / "Dicom/Patient002/Study01/Series05/IM00001.dcm";
    const auto opened = dicom::DicomFile::open(series.string()).value();
    for (const auto& [element, time] : {std::pair{0x0030, "083000"}, {0x0031, "091000"}, {0x0033, "091100"}})
        EXPECT_EQ(opened->header().string({0x0008, static_cast<std::uint16_t>(element)}), time);
    std::set<std::string> instances, allSeries, studies;
    for (const auto& image : demoImages(DemoSize::Tiny)) {
        const auto told = demoRecord(image);
        const auto path = pathOf(disc_) / "image.dcm";
        writeDemoFile(image, path);
        const auto read = std::get<ImageRecord>(readRecord(path));
        EXPECT_EQ(patientText(read), patientText(told));
        EXPECT_EQ(studyText(read), studyText(told));
        EXPECT_EQ(seriesText(read, {1, 0, 0}), seriesText(told, {1, 0, 0}));
        EXPECT_EQ(entryText(read, 1), entryText(told, 1));
        EXPECT_EQ(std::tie(read.studyUid, read.seriesUid, read.studyTime, read.instanceNumber),
                  std::tie(told.studyUid, told.seriesUid, told.studyTime, told.instanceNumber));
        const auto file = dicom::DicomFile::open(path.string());
        EXPECT_TRUE(instances.insert(file.value()->header().string({0x0008, 0x0018})).second);
        allSeries.insert(read.seriesUid);
        studies.insert(read.studyUid);
    }
    EXPECT_EQ(allSeries.size(), 13u);
    EXPECT_EQ(studies.size(), 6u);
}

TEST(DemoFile, DescribesItsPixelsRightly) {
    QTemporaryDir folder;
    std::set<Collimator::Shape> shapes;
    for (auto image : demoImages(DemoSize::Tiny)) {
        // One of each shutter, and large enough that the edges tell.
        if (!shapes.insert(image.setup.shutter).second) continue;
        constexpr int size = 200;
        image.setup.size = size;
        image.frames = 2;
        const auto path = pathOf(folder) / "image.dcm";
        writeDemoFile(image, path);
        const auto opened = dicom::DicomFile::open(path.string());
        const auto& file = *opened.value();
        EXPECT_EQ(file.frameCount(), 2);
        EXPECT_NEAR(1000 / file.header().decimal({0x0018, 0x1063}).value_or(0), image.setup.frameRate, 0.01);
        const auto shutter = file.shutter(0);
        ASSERT_NE(shutter.rectangle.has_value(), shutter.circle.has_value());
        const auto samples = test::samplesOf(file, 1);
        ASSERT_EQ(samples.size(), std::size_t{size * size});
        int open = 0, dark = 0;
        for (int i = 0; i < size * size; ++i) {
            const int row = i / size + 1, column = i % size + 1;
            bool covered = false;
            if (const auto& edge = shutter.rectangle) {
                covered =
                    column < edge->left || column > edge->right || row < edge->upper || row > edge->lower;
            } else {
                const auto& [y, x, radius] = *shutter.circle;
                covered = std::hypot(row - y, column - x) > radius + 1;
            }
            const bool isDark = samples[static_cast<std::size_t>(i)] == 0;
            EXPECT_TRUE(isDark || !covered) << row << " " << column;
            open += covered ? 0 : 1;
            dark += isDark && !covered ? 1 : 0;
        }
        EXPECT_GT(open, size * size / 2);
        EXPECT_LT(dark, open / 40) << "only the soft edge may be dark inside the shutter";
    }
    EXPECT_EQ(shapes.size(), 2u);
}

}  // namespace
}  // namespace cinedisc::discmaker
