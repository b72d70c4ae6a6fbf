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
    for (const auto& [name, content] : filesBelow(disc_))
        fs::permissions(disc_ / name, fs::perms::owner_read);
    makeDisc("new");
    EXPECT_EQ(std::distance(fs::directory_iterator(disc_), {}), 3) << "nothing is left aside";
    const auto files = filesBelow(disc_);
    EXPECT_EQ(files.size(), 3u);
    EXPECT_EQ(files.at("Dicom/Patient000/Study01/Series01/IM00001.dcm"), "new");
    EXPECT_EQ(files.at("viewer"), "program");
    EXPECT_NE(files.at("CD.xml").find("new"), std::string::npos);
}

TEST_F(DiscFolderTest, RefusesWhatItDidNotWrite) {
    const std::string mark = catalogueXml({"", {}});
    const std::string series = "Dicom/Patient000/Study01/Series01/";
    const std::map<std::string, std::string> foreign[] = {
        {{"letter.txt", "dear"}},
        {{"CD.xml", "<disc/>"}},
        {{"CD.xml", "<disc/>"}, {".makedisc-new/CD.xml", mark}},
        {{"CD.xml", mark}, {"Dicom/Patient000/mine.txt", "x"}},
        {{"CD.xml", mark}, {series + "photo.dcm", "x"}},
        {{"CD.xml", mark}, {series + "IM.dcm", "x"}},
        {{"CD.xml", mark}, {series + "IM00001.dcm.txt", "x"}},
        {{"CD.xml", mark}, {series + "IM00001.dcm/IM00001.dcm", "x"}},
        {{"CD.xml", mark}, {"Dicom/Patient000/Study01/Series0:/IM00001.dcm", "x"}},
        {{"CD.xml", mark}, {"Dicom/Patient000/Study/Series01/IM00001.dcm", "x"}},
        {{".makedisc-old/x", "x"}, {"Dicom/Name000/Study01/Series01/IM00001.dcm", "x"}},
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
    fs::create_directories(disc_);
    { DiscFolder folder(disc_); }
    EXPECT_TRUE(fs::is_empty(disc_)) << "one that was there stays";
}

TEST_F(DiscFolderTest, TakesUpAfterARunThatWasBrokenOff) {
    for (const char* left : {".makedisc-new/stray", ".makedisc-old/Dicom/Patient000"}) {
        fs::remove_all(disc_);
        writeFile(disc_ / left, "half");
        writeFile(disc_ / "Dicom/Patient000/Study01/Series01/IM00001.dcm", "half");
        makeDisc("new");
        EXPECT_EQ(filesBelow(disc_).size(), 2u) << left;
    }
}

TEST_F(DiscFolderTest, NeitherFollowsLinksNorEmptiesWhatTheyPointTo) {
    const auto elsewhere = disc_.parent_path() / "elsewhere";
    const std::string folder = "Dicom/Patient000/Study01/Series01", file = folder + "/IM00001.dcm";
    for (const auto& linked : {folder, file}) {
        makeDisc("old");
        writeFile(elsewhere / "IM00001.dcm", "kept");
        fs::remove_all(disc_ / linked);
        fs::create_symlink(linked == file ? elsewhere / "IM00001.dcm" : elsewhere, disc_ / linked);
        EXPECT_THROW(makeDisc("new"), DiscError) << linked;
        fs::remove(disc_ / linked);
    }
    EXPECT_EQ(filesBelow(elsewhere).size(), 1u);

    makeDisc("old");
    fs::rename(disc_ / "Dicom", elsewhere / "Dicom");
    fs::create_directory_symlink(elsewhere / "Dicom", disc_ / "Dicom");
    makeDisc("new");
    EXPECT_EQ(filesBelow(elsewhere).at(file), "old");
    EXPECT_EQ(filesBelow(disc_).at(file), "new");
}

}  // namespace
}  // namespace cinedisc::discmaker
