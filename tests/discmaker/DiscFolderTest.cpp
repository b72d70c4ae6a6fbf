#include "discmaker/CatalogueWriter.h"
#include "discmaker/DiscError.h"
#include "discmaker/DiscFolder.h"
#include "tests/discmaker/DiscFiles.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

namespace fs = std::filesystem;
using test::filesBelow;
using test::writeFile;

class DiscFolderTest : public testing::Test {
  protected:
    DiscFolderTest() : disc_(fs::path(temporary_.path().toStdString()) / "disc") {}

    void makeDisc(const std::string& picture) {
        DiscFolder folder(disc_);
        writeFile(folder.staging() / "Dicom/Patient000/Study01/Series01/IM00001.dcm", picture);
        writeFile(folder.staging() / "CD.xml", catalogueXml({picture, {}}));
        folder.publish();
    }

    QTemporaryDir temporary_;
    fs::path disc_;
};

TEST_F(DiscFolderTest, ReplacesItsOwnDiscAndLeavesWhatElseLiesThere) {
    makeDisc("old");
    writeFile(disc_ / "viewer", "program");
    makeDisc("new");
    const auto files = filesBelow(disc_);
    EXPECT_EQ(files.size(), 3u);
    EXPECT_EQ(files.at("Dicom/Patient000/Study01/Series01/IM00001.dcm"), "new");
    EXPECT_EQ(files.at("viewer"), "program");
    EXPECT_NE(files.at("CD.xml").find("new"), std::string::npos);
}

TEST_F(DiscFolderTest, RefusesWhatItDidNotWrite) {
    const std::string mark = catalogueXml({"", {}});
    const std::map<std::string, std::string> foreign[] = {
        {{"letter.txt", "dear"}},
        {{"CD.xml", "<disc/>"}},
        {{"CD.xml", mark}, {"Dicom/Patient000/mine.txt", "x"}},
        {{"CD.xml", mark}, {"Dicom/Patient000/Study01/Series01/photo.dcm", "x"}},
        {{"CD.xml", mark}, {"Dicom/Patient000/Study01/Series01/IM00001.dcm/IM00001.dcm", "x"}},
    };
    for (const auto& files : foreign) {
        fs::remove_all(disc_);
        for (const auto& [name, content] : files) writeFile(disc_ / name, content);
        EXPECT_THROW(DiscFolder{disc_}, DiscError) << files.rbegin()->first;
        EXPECT_EQ(filesBelow(disc_), files);
    }
    fs::remove_all(disc_);
    writeFile(disc_, "a file");
    EXPECT_THROW(DiscFolder{disc_}, DiscError);
}

TEST_F(DiscFolderTest, LeavesTheOldDiscWhenTheNewOneIsGivenUp) {
    makeDisc("old");
    const auto before = filesBelow(disc_);
    {
        DiscFolder folder(disc_);
        writeFile(folder.staging() / "CD.xml", "half");
    }
    EXPECT_EQ(filesBelow(disc_), before);

    fs::remove_all(disc_);
    { DiscFolder folder(disc_); }
    EXPECT_FALSE(fs::exists(disc_)) << "a folder made for nothing is taken away";
}

TEST_F(DiscFolderTest, TakesUpAfterARunThatWasBrokenOff) {
    writeFile(disc_ / ".makedisc-new/CD.xml", "half");
    writeFile(disc_ / ".makedisc-old/Dicom/Patient000/Study01/Series01/IM00001.dcm", "old");
    writeFile(disc_ / "Dicom/Patient000/Study01/Series01/IM00001.dcm", "half");
    makeDisc("new");
    EXPECT_EQ(filesBelow(disc_).size(), 2u);
}

}  // namespace
}  // namespace cinedisc::discmaker
