#include "discmaker/CatalogueText.h"
#include "discmaker/DemoDisc.h"
#include "discmaker/DemoFile.h"
#include "discmaker/HeaderReader.h"
#include "discmaker/LosslessFile.h"
#include "tests/discmaker/DiscFiles.h"

#include <QCryptographicHash>
#include <QTemporaryDir>

#include <cmath>
#include <set>

namespace cinedisc::discmaker {
namespace {

namespace fs = std::filesystem;

/// Contrast comes, darkens the picture and goes. The figures change with anything that a picture is made of:
/// after a change that is meant they are to be read off again, when the pictures have been looked at.
TEST(Angiogram, IsThePictureThatItAlwaysWas) {
    Angiogram::Setup left;
    left.anatomy.lesions = {{Lesion::Site::Anterior, 0.3, 0.68, 8}, {Lesion::Site::Right, 0.4, 0.45, 9}};
    left.view = {-30, -20}, left.size = 300, left.bits = 12, left.margins = {0.07, 0.11};
    auto right = left;
    right.side = Catheter::Side::Right, right.view = {28, 26}, right.bits = 16;
    right.access = Catheter::Access::Radial, right.shutter = Collimator::Shape::Circular;
    const std::tuple<const Angiogram::Setup*, int, double> rows[] = {
        {&left, 0, 71.0188},   {&left, 16, 70.2683},  {&left, 38, 67.9324},
        {&left, 150, 70.8621}, {&right, 20, 61.4097}, {&right, 45, 59.0219}};
    for (const auto& [setup, number, grey] : rows) {
        const auto samples = Angiogram(*setup).frame(number);
        double sum = 0;
        for (int i = 0; i < 300 * 300; ++i)
            sum += samples[std::size_t(i)] * (1 + i / 300 / 300.0 + i % 300 / 600.0);
        EXPECT_NEAR(100 * sum / (300 * 300) / (1 << setup->bits), grey, 1e-4) << number;
    }
}

TEST(DemoDisc, PlaysInTheOrderOfItsListAndIsTheSameEveryTime) {
    const QTemporaryDir folder;
    DiscRequest request;
    request.disc = folder.path().toStdString();
    makeDemoDisc(request, DemoSize::Tiny);
    const auto first = test::filesBelow(request.disc);
    const auto played = test::playedFiles(request.disc);
    const auto images = demoImages(DemoSize::Tiny);
    ASSERT_EQ(played.size(), images.size());
    EXPECT_EQ(played.size(), 38u);
    std::set<std::string> instances, allSeries, studies;
    QCryptographicHash headers(QCryptographicHash::Sha1);
    double grey = 0;
    for (std::size_t i = 0; i < images.size(); ++i) {
        const auto path = request.disc / "image.dcm";
        test::writeFile(path, played[i]);
        const auto opened = dicom::DicomFile::open(path.string()).value();
        const auto told = demoRecord(images[i]), read = recordOf(*opened);
        EXPECT_EQ(patientText(read) + studyText(read) + seriesText(read, {1, 0}) + entryText(read, 1),
                  patientText(told) + studyText(told) + seriesText(told, {1, 0}) + entryText(told, 1));
        EXPECT_EQ(std::tie(read.studyUid, read.seriesUid, read.studyTime, read.instanceNumber),
                  std::tie(told.studyUid, told.seriesUid, told.studyTime, told.instanceNumber));
        for (const auto& line : describeHeader(*opened))
            if (line.tag.group > 2 && line.tag.group < 0x7FE0)
                headers.addData(QByteArray::fromStdString(line.vr + line.keyword + line.value));
        for (const double sample : test::samplesOf(*opened, 0))
            grey += std::sqrt(sample / (1 << images[i].setup.bits)) * double(i + 1);
        EXPECT_TRUE(instances.insert(read.instanceUid).second);
        allSeries.insert(read.seriesUid);
        studies.insert(read.studyUid);
        fs::remove(path);
    }
    EXPECT_EQ(std::pair(allSeries.size(), studies.size()), std::pair(std::size_t{13}, std::size_t{6}));
    // To be read off again after a change that is meant.
    EXPECT_EQ(headers.result().toHex().toStdString(), "23e21526157dcccc68303b5460516052269782d8");
    EXPECT_NEAR(grey, 448367, 1);
    const auto& xml = first.at("CD.xml");
    for (const char* text : {"Series 1: LCA RAO 30 CAUD 22 (1 run)", "(5 runs)", "(7 runs)", "(3 images)",
                             "LINDSTRÖM, ÅSA  (CD-100417)", "КОВАЛЁВА, ОЛЬГА ПЕТРОВНА  (CD-100523)"})
        EXPECT_NE(xml.find(text), std::string::npos) << text;
    makeDemoDisc(request, DemoSize::Tiny);
    EXPECT_EQ(test::filesBelow(request.disc), first);
}

TEST(DemoFile, KeepsEverySampleAndIsDarkOutsideTheShutterThatItsHeaderTells) {
    const QTemporaryDir folder;
    std::set<std::pair<Collimator::Shape, int>> kinds;
    for (auto image : demoImages(DemoSize::Tiny)) {
        if (!kinds.insert({image.setup.shutter, image.setup.bits}).second) continue;
        constexpr int size = 200;
        image.setup.size = size, image.frames = 2;
        const auto path = folder.path().toStdString() + "/image.dcm";
        writeDemoFile(image, path);
        const auto file = dicom::DicomFile::open(path).value();
        const auto shutter = file->shutter(0);
        const auto samples = test::samplesOf(*file, 1);
        EXPECT_EQ(samples, Angiogram(image.setup).frame(image.firstFrame + 1));
        int bright = 0;
        for (int i = 0; i < size * size; ++i) {
            const int row = i / size + 1, column = i % size + 1;
            const auto& edge = shutter.rectangle;
            const bool isOpen =
                edge ? column >= edge->left && column <= edge->right && row >= edge->upper &&
                           row <= edge->lower
                     : std::hypot(row - shutter.circle->row, column - shutter.circle->column) <=
                           shutter.circle->radius + 1;
            EXPECT_TRUE(isOpen || samples[std::size_t(i)] == 0) << row << " " << column;
            bright += samples[std::size_t(i)] > 0;
        }
        EXPECT_GT(bright, size * size / 2);
        EXPECT_NEAR(1000 / file->header().decimal({0x0018, 0x1063}).value_or(0), image.setup.frameRate, 0.01);
    }
    EXPECT_EQ(kinds.size(), 3u);
    EXPECT_EQ(uidFor("patient/1"), "2.25.326828722255908054846114447225414624549");
    EXPECT_EQ(uidFor("patient/22"), "2.25.741685636451064761532789966783045587") << "no zero in front";
}

}  // namespace
}  // namespace cinedisc::discmaker
