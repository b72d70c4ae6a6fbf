#include "discmaker/CatalogueWriter.h"
#include "discmaker/DiscError.h"
#include "discmaker/DiscFolder.h"
#include "tests/discmaker/DiscFiles.h"

#include <QTemporaryDir>

namespace cinedisc::discmaker {
namespace {

namespace fs = std::filesystem;
using test::filesBelow;
using test::writeFile;

class DiscFolderTest : public testing::Test {
  protected:
    void makeDisc(const std::string& picture) {
        DiscFolder folder(disc_);
        writeFile(folder.staging() / series_ / "IM00001.dcm", picture);
        writeFile(folder.staging() / "CD.xml", catalogueXml({picture, {}}));
        folder.publish();
    }

    QTemporaryDir temporary_;
    fs::path root_ = temporary_.path().toStdString(), disc_ = root_ / "disc";
    const std::string series_ = "Dicom/Patient000/Study01/Series01/", mark_ = catalogueXml({"", {}});
};

TEST_F(DiscFolderTest, ReplacesItsOwnDiscAndLeavesWhatElseLiesThere) {
    makeDisc("old");
    writeFile(disc_ / "viewer", "program");
    writeFile(disc_ / ".makedisc-old/Dicom/Patient000", "of a run that was broken off");
    for (const auto& [name, content] : filesBelow(disc_))
        fs::permissions(disc_ / name, fs::perms::owner_read);
    auto before = filesBelow(disc_);
    before.erase(".makedisc-old/Dicom/Patient000");
    writeFile(DiscFolder(disc_).staging() / "CD.xml", "half");
    EXPECT_EQ(filesBelow(disc_), before) << "given up";
    makeDisc("new");
    const std::map<std::string, std::string> files{
        {series_ + "IM00001.dcm", "new"}, {"viewer", "program"}, {"CD.xml", catalogueXml({"new", {}})}};
    EXPECT_EQ(filesBelow(disc_), files);
    EXPECT_EQ(std::distance(fs::directory_iterator(disc_), {}), 3) << "nothing is left aside";

    fs::permissions(disc_ / "viewer", fs::perms::owner_all);
    for (const char* left : {".makedisc-new/disc/stray", ".makedisc-old/stray"}) {
        fs::remove_all(disc_);
        writeFile(disc_ / left, "half");
        writeFile(disc_ / series_ / "IM00002.dcm", "half");
        makeDisc("new");
        EXPECT_EQ(filesBelow(disc_).size(), 2u) << left;
    }
    fs::remove_all(disc_);
    {
        const DiscFolder folder(disc_);
        EXPECT_THROW(DiscFolder{disc_}, DiscError) << "another one is at it";
    }
    EXPECT_FALSE(fs::exists(disc_)) << "a folder made for nothing is taken away";
    fs::create_directories(disc_);
    { DiscFolder folder(disc_); }
    EXPECT_TRUE(fs::is_empty(disc_)) << "one that was there stays";
}

TEST_F(DiscFolderTest, PutsTheOldDiscBackWhenItCannotBeReplaced) {
    for (const char* name : {"CD.xml", "Dicom", "README.TXT", "viewer"}) {
        fs::remove_all(disc_);
        makeDisc("old");
        for (const char* other : {"README.TXT", "viewer"}) writeFile(disc_ / other, "old");
        const auto before = filesBelow(disc_);
        {
            DiscFolder folder(disc_);
            for (const auto& [each, content] : before) writeFile(folder.staging() / each, "new");
            writeFile(disc_ / ".makedisc-old" / name / "stray", "in the way");
            EXPECT_THROW(folder.publish(), fs::filesystem_error) << name;
        }
        fs::remove_all(disc_ / ".makedisc-old");
        EXPECT_EQ(filesBelow(disc_), before) << name;
    }
}

TEST_F(DiscFolderTest, RefusesWhatItDidNotWrite) {
    const std::map<std::string, std::string> foreign[] = {
        {{"letter.txt", "dear"}},
        {{"CD.xml", "<disc/>"}, {".makedisc-new/CD.xml", mark_}},
        {{"CD.xml", mark_}, {"Dicom/Patient000/mine.txt", "x"}},
        {{"CD.xml", mark_}, {series_ + "IM00001.dcm.txt", "x"}},
        {{"CD.xml", mark_}, {series_ + "IM00001.dcm/IM00001.dcm", "x"}},
        {{"CD.xml", mark_}, {"Dicom/Patient000/Study01/Series0:/IM00001.dcm", "x"}},
        {{"CD.xml", mark_}, {"Other/photo.dcm", "x"}},
        {{"Disc1/CD.xml", "<disc/>"}},
        {{"Disc1/CD.xml", mark_}, {"Disc1/photo.jpg", "x"}},
        {{".makedisc-old/x", "x"}, {"Dicom/Name000/Study01/Series01/IM00001.dcm", "x"}},
    };
    for (const auto& files : foreign) {
        fs::remove_all(disc_);
        for (const auto& [name, content] : files) writeFile(disc_ / name, content);
        EXPECT_THROW(DiscFolder{disc_}, DiscError) << files.rbegin()->first;
        EXPECT_EQ(filesBelow(disc_), files);
    }
    writeFile(root_ / "file", "x");
    EXPECT_THROW(DiscFolder(root_ / "file"), DiscError);
}

TEST_F(DiscFolderTest, NeitherFollowsLinksNorEmptiesWhatTheyPointTo) {
    writeFile(root_ / "elsewhere/IM00001.dcm", "kept");
    for (const std::string link :
         {"Dicom", "Dicom/Patient000", "Dicom/Patient000/Study01/Series01/IM1.dcm"}) {
        fs::remove_all(disc_);
        makeDisc("old");
        fs::remove_all(disc_ / link);
        fs::create_symlink(root_ / "elsewhere", disc_ / link);
        EXPECT_THROW(makeDisc("new"), DiscError) << link;
        EXPECT_EQ(filesBelow(root_ / "elsewhere").size(), 1u);
    }
}

}  // namespace
}  // namespace cinedisc::discmaker
