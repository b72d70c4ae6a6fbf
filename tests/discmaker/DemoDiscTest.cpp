#include "catalogue/CatalogueReader.h"
#include "discmaker/DemoDisc.h"
#include "discmaker/DemoFile.h"
#include "platform/Folder.h"
#include "tests/discmaker/DecodedFile.h"
#include "tests/discmaker/DiscFiles.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

namespace fs = std::filesystem;

fs::path pathOf(const QTemporaryDir& folder) { return folder.path().toStdString(); }

/// Names of a folder's entries in the order in which the viewer walks them.
QStringList listing(const Folder& folder) {
    QStringList names;
    for (const auto& item : folder.Items()) names << item.Path().section('/', -1);
    return names;
}

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
    EXPECT_EQ(listing(patients), (QStringList{"Patient000", "Patient001", "Patient002", "Patient003"}));
    ASSERT_EQ(root->children().size(), 4u);
    for (int i = 0; i < 4; ++i)
        expectAgreement(root->children()[static_cast<std::size_t>(i)], patients.Items().Item(i).GetFolder(),
                        2);
    EXPECT_EQ(root->children()[0].first().text(), "LINDSTRÖM, ÅSA  (CD-100417)");
    EXPECT_EQ(root->children()[1].first().text(), "КОВАЛЁВА, ОЛЬГА ПЕТРОВНА  (CD-100523)");
}

TEST_F(DemoDiscTest, IsTheSameEveryTime) {
    const auto first = test::filesBelow(pathOf(disc_));
    makeDemoDisc(pathOf(disc_), "Demo", {}, DemoSize::Tiny);
    EXPECT_EQ(test::filesBelow(pathOf(disc_)), first);
}

TEST_F(DemoDiscTest, GivesEveryFileItsOwnIdentifiers) {
    std::set<std::string> instances, series, studies;
    for (const auto& [name, bytes] : test::filesBelow(pathOf(disc_) / "Dicom")) {
        test::DecodedFile file(bytes);
        EXPECT_TRUE(instances.insert(file.text(DCM_SOPInstanceUID)).second) << name;
        series.insert(file.text(DCM_SeriesInstanceUID));
        studies.insert(file.text(DCM_StudyInstanceUID));
    }
    EXPECT_EQ(series.size(), 13u);
    EXPECT_EQ(studies.size(), 6u);
}

TEST(DemoImages, OfferEveryKindOfSeries) {
    std::map<std::string, int> runs, stills;
    int large = 0;
    for (const auto& image : demoImages(DemoSize::Full)) {
        const auto series = demoRecord(image).seriesUid;
        ++(image.frames > 1 ? runs : stills)[series];
        large += image.setup.size == 1024 && image.setup.bits == 12 ? 1 : 0;
        EXPECT_TRUE(image.frames == 1 || image.frames >= 60);
    }
    const auto has = [&runs](int count) {
        return std::any_of(runs.begin(), runs.end(),
                           [count](const auto& series) { return series.second == count; });
    };
    EXPECT_TRUE(has(1) && has(5) && has(7))
        << "strip shorter than, as long as and longer than its five places";
    EXPECT_GE(stills.size(), 6u);
    EXPECT_EQ(large, 1);
}

TEST(DemoFile, DescribesItsPixelsRightly) {
    QTemporaryDir folder;
    std::set<std::string> shapes;
    for (auto image : demoImages(DemoSize::Tiny)) {
        // One of each shutter, and large enough that the edges tell.
        if (!shapes.insert(image.setup.shutter == Collimator::Shape::Circular ? "CIRCULAR" : "RECTANGULAR")
                 .second)
            continue;
        image.setup.size = 200;
        image.frames = 2;
        const auto path = pathOf(folder) / "image.dcm";
        writeDemoFile(image, path);
        test::DecodedFile file(test::contentOf(path));
        EXPECT_EQ(file.number(DCM_NumberOfFrames), 2);
        EXPECT_NEAR(1000 / std::stod(file.text(DCM_FrameTime)), image.setup.frameRate, 0.01);
        EXPECT_EQ(file.text(DCM_SpecificCharacterSet), "ISO_IR 192");
        EXPECT_EQ(std::stod(file.text(DCM_PositionerPrimaryAngle)), image.setup.view.primaryAngle);
        ASSERT_TRUE(shapes.contains(file.text(DCM_ShutterShape)));

        const bool circular = file.text(DCM_ShutterShape) == "CIRCULAR";
        const auto covered = [&](int row, int column) {
            if (!circular)
                return column < file.number(DCM_ShutterLeftVerticalEdge) ||
                       column > file.number(DCM_ShutterRightVerticalEdge) ||
                       row < file.number(DCM_ShutterUpperHorizontalEdge) ||
                       row > file.number(DCM_ShutterLowerHorizontalEdge);
            const int down = row - file.number(DCM_CenterOfCircularShutter);
            const int across = column - std::stoi(file.text(DCM_CenterOfCircularShutter, 1));
            const int radius = file.number(DCM_RadiusOfCircularShutter);
            return down * down + across * across > radius * radius + 2 * radius;
        };
        const auto samples = file.samples();
        int open = 0, dark = 0;
        for (int row = 1; row <= 200; ++row) {
            for (int column = 1; column <= 200; ++column) {
                const auto sample = samples[static_cast<std::size_t>((row - 1) * 200 + column - 1)];
                if (covered(row, column)) {
                    EXPECT_EQ(sample, 0) << row << " " << column;
                } else {
                    ++open;
                    dark += sample == 0;
                }
            }
        }
        EXPECT_GT(open, 200 * 200 / 2);
        EXPECT_LT(dark, open / 40) << "only the soft edge may be dark inside the shutter";
    }
    EXPECT_EQ(shapes.size(), 2u);
}

}  // namespace
}  // namespace cinedisc::discmaker
