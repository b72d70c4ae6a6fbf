#include "catalogue/CatalogueReader.h"
#include "discmaker/CommandLine.h"
#include "discmaker/DiscError.h"
#include "discmaker/DiscMaker.h"
#include "tests/discmaker/DiscFiles.h"
#include "tests/support/DicomBuilder.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::DicomBuilder;
using test::filesBelow;
using test::writeFile;
using testing::HasSubstr;

DicomBuilder plainImage(const std::string& patient, int frames = 1) {
    auto builder = DicomBuilder::image(4, 4, frames);
    builder.text({0x0010, 0x0010}, "PN", patient)
        .text({0x0020, 0x000D}, "UI", "1.2")
        .text({0x0020, 0x000E}, "UI", "1.2.3");
    return builder;
}

DicomBuilder image(const std::string& patient, int instance, int frames = 1) {
    auto builder = plainImage(patient, frames);
    builder.text({0x0008, 0x0005}, "CS", "ISO_IR 144")
        .text({0x0010, 0x0020}, "LO", "7")
        .text({0x0020, 0x0011}, "IS", "4")
        .text({0x0020, 0x0013}, "IS", std::to_string(instance));
    builder.gradientPixels();
    return builder;
}

class DiscMakerTest : public testing::Test {
  protected:
    DiscMakerTest() : root_(temporary_.path().toStdString()), input_(root_ / "in"), disc_(root_ / "out") {
        fs::create_directories(input_ / "deep" / "down");
    }

    DiscSummary make(const std::vector<fs::path>& named) {
        return makeDisc(disc_, "Title & more", named, {},
                        [this](const std::string& text) { reported_ += text + "\n"; });
    }
    int run(std::vector<std::string> arguments) { return runCommandLine(arguments); }

    QTemporaryDir temporary_;
    fs::path root_, input_, disc_;
    std::string reported_;
};

TEST_F(DiscMakerTest, CopiesDicomFilesUnchangedAndCountsTheRest) {
    image("\xB8\xD2\xD0\xDD\xDE\xD2", 2, 3).writeTo(input_ / "x10");  // Cyrillic in ISO 8859-5
    image("\xB8\xD2\xD0\xDD\xDE\xD2", 1).writeTo(input_ / "deep/down/last.bin");
    DicomBuilder document;
    document.text({0x0008, 0x0016}, "UI", "1.2.840.10008.5.1.4.1.1.88.11").text({0x0010, 0x0020}, "LO", "8");
    document.writeTo(input_ / "deep/report.dcm");
    DicomBuilder directory;
    directory.sequence({0x0004, 0x1220}, {});
    directory.writeTo(input_ / "DICOMDIR");
    writeFile(input_ / "readme.txt",
              "Not a picture, but long enough to hold a preamble." + std::string(400, '.'));
    writeFile(input_ / "empty", "");
    fs::create_symlink(input_, input_ / "deep/loop");
    fs::create_symlink(input_ / "x10", input_ / "again");
    fs::create_symlink(input_ / "nowhere", input_ / "dangling");
    fs::create_symlink("/dev/null", input_ / "device");
    fs::create_directories(root_ / "elsewhere");
    image("A", 1).writeTo(root_ / "elsewhere/not.dcm");
    fs::create_directory_symlink(root_ / "elsewhere", input_ / "deep/elsewhere");

    const auto summary = make({input_, input_ / "x10"});
    EXPECT_EQ(std::tuple(summary.patients, summary.files, summary.notDicom, summary.directories,
                         summary.unreadable),
              std::tuple(2u, 3u, 2u, 1u, 0u))
        << "a file that is named twice goes on the disc once; " << reported_;
    const auto files = filesBelow(disc_);
    ASSERT_EQ(files.size(), 4u);
    EXPECT_EQ(files.at("Dicom/Patient000/Study01/Series01/IM00001.dcm"),
              contentOf(input_ / "deep/down/last.bin"));
    EXPECT_EQ(files.at("Dicom/Patient000/Study01/Series01/IM00002.dcm"), contentOf(input_ / "x10"));
    EXPECT_EQ(files.at("Dicom/Patient001/Study01/Series01/IM00001.dcm"),
              contentOf(input_ / "deep/report.dcm"));
    const auto& catalogue = files.at("CD.xml");
    for (const char* text : {"<disc title=\"Title &amp; more\">", "<text>Иванов  (7)</text>",
                             "<text>Series 4: XA (1 run, 1 image)</text>", "<text>Run 2: 3 frames</text>",
                             "<text>Unnamed patient  (8)</text>", "<text>Document 1</text>"})
        EXPECT_THAT(catalogue, HasSubstr(text));
}

TEST_F(DiscMakerTest, TakesFilesInNaturalOrderWhateverTheirNamesAndRights) {
    // Without instance numbers the order is that of the files.
    for (const char* name : {"b/x", "a10 > a9.dcm", "a9", "A1"}) {
        auto file = plainImage("A]]>B^<i>&\"");
        file.text({0x0008, 0x0060}, "CS", "RF");
        file.text({0x0018, 0x1510}, "DS", "30").text({0x0018, 0x1511}, "DS", "20");
        file.text({0x0008, 0x103E}, "LO", name);
        file.gradientPixels();
        fs::create_directories((input_ / name).parent_path());
        file.writeTo(input_ / name);
        fs::permissions(input_ / name, fs::perms::owner_read);
    }
    fs::rename(input_, root_ / "output");  // begins like the disc's own folder
    fs::create_directory_symlink(root_ / "output", root_ / "link");
    EXPECT_EQ(make({root_ / "link"}).files, 4u);

    const auto series = disc_ / "Dicom/Patient000/Study01/Series01";
    const char* order[] = {"A1", "a9", "a10 > a9.dcm", "b/x"};
    for (int i = 0; i < 4; ++i) {
        const auto copy = series / ("IM0000" + std::to_string(i + 1) + ".dcm");
        EXPECT_TRUE(contentOf(copy) == contentOf(root_ / "output" / order[i])) << order[i];
        EXPECT_NE(fs::status(copy).permissions() & fs::perms::owner_write, fs::perms::none);
    }
    const auto catalogue = readCatalogue(QString::fromStdString((disc_ / "CD.xml").string()));
    ASSERT_TRUE(catalogue);
    EXPECT_EQ(catalogue->children()[0].first().text(), "A]]>B, <i>&\"  (P-1)");
    EXPECT_THAT(contentOf(disc_ / "CD.xml"), HasSubstr("<text>Image 4</text>")) << "only XA tells its view";
}

TEST_F(DiscMakerTest, RefusesWhatWouldDestroyOrRepeatItsInput) {
    image("A", 1).writeTo(input_ / "a.dcm");
    make({input_});
    const auto before = filesBelow(disc_);
    EXPECT_THROW(make({disc_}), DiscError);
    EXPECT_THROW(make({disc_ / "Dicom"}), DiscError);
    EXPECT_THROW(make({input_, root_ / "missing"}), DiscError);
    EXPECT_THROW(make({input_ / "deep"}), DiscError) << "nothing to put on the disc";
    EXPECT_EQ(filesBelow(disc_), before);
    EXPECT_EQ(make({root_}).files, 1u) << "the disc below a named folder is passed over";
}

TEST_F(DiscMakerTest, TellsOfFilesThatCannotBeRead) {
    image("A", 1).writeTo(input_ / "a.dcm");
    auto bytes = contentOf(input_ / "a.dcm");
    bytes.resize(160);  // ends within the meta header
    writeFile(input_ / "cut.dcm", bytes);
    EXPECT_EQ(run({disc_.string(), input_.string()}), 3);
    EXPECT_EQ(filesBelow(disc_ / "Dicom").size(), 1u);
    make({input_});
    EXPECT_THAT(reported_, HasSubstr("cut.dcm: "));
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(run({"--version"}), 0);
}

TEST_F(DiscMakerTest, LaysProgramAndLicenceBesideTheCatalogue) {
    image("A", 1).writeTo(input_ / "a.dcm");
    writeFile(root_ / "viewer", "program");
    fs::permissions(root_ / "viewer", fs::perms::owner_exec, fs::perm_options::add);
    writeFile(root_ / "terms", "licence");
    const auto place = [this](const char* name) { return (root_ / name).string(); };
    writeFile(root_ / "programs/cinedisc.exe", "Windows");
    writeFile(root_ / "programs/linux/lib/library", "Linux");
    const std::vector<std::string> arguments{"--program",    place("viewer"), "--autorun",
                                             disc_.string(), "--program",     place("programs"),
                                             "--license",    place("terms"),  input_.string()};
    ASSERT_EQ(run(arguments), 0);
    ASSERT_EQ(run(arguments), 0) << "a second time over the first";
    EXPECT_EQ(contentOf(disc_ / "license.txt"), "licence");
    EXPECT_EQ(contentOf(disc_ / "linux/lib/library"), "Linux");
    EXPECT_THAT(contentOf(disc_ / "autorun.inf"), HasSubstr("open=cinedisc.exe\r\n"));
    EXPECT_NE(fs::status(disc_ / "viewer").permissions() & fs::perms::owner_exec, fs::perms::none);
    EXPECT_EQ(run({"--program", place("nothing"), (root_ / "other").string(), input_.string()}), 1);
    EXPECT_EQ(run({"--autorun", "--program", place("viewer"), (root_ / "other").string(), input_.string()}),
              1);
    EXPECT_FALSE(fs::exists(root_ / "other"));
}

TEST(CommandLine, SaysWhatIsWrongWithTheArguments) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "folder of the disc is missing"},
        {{"disc"}, "no DICOM files or folders"},
        {{"--demo"}, "folder of the disc is missing"},
        {{"--demo", "disc", "file"}, "one folder and no files"},
        {{"disc", "file", "--title"}, "Missing value after '--title'"},
        {{"--fast", "disc", "file"}, "Unknown option 'fast'"},
    };
    for (const auto& [arguments, message] : cases) {
        const auto parsed = parseCommandLine(arguments);
        ASSERT_TRUE(std::holds_alternative<UsageError>(parsed)) << message;
        EXPECT_THAT(std::get<UsageError>(parsed).message, HasSubstr(message));
    }
    const std::vector<std::string> dashed{"disc\xE9", "--title", "Ł", "--", "--demo"};
    const auto request = std::get<MakeRequest>(parseCommandLine(dashed));
    EXPECT_FALSE(request.demo);
    EXPECT_EQ(request.title, "Ł");
    EXPECT_EQ(request.disc, "disc\xE9") << "names are bytes, not letters";
    EXPECT_EQ(request.named, std::vector<fs::path>{"--demo"});
    EXPECT_FALSE(request.enclosures.autorun || request.enclosures.license);
    const auto answer = [](std::vector<std::string> arguments) {
        return std::get<Answer>(parseCommandLine(arguments)).text;
    };
    for (const char* option : {"--demo", "--title", "--program", "--license", "Exit status"})
        EXPECT_THAT(answer({"disc", "--fast", "--help"}), HasSubstr(option));
    EXPECT_THAT(answer({"--version"}), testing::MatchesRegex("makedisc [0-9.]+\n"));
}

}  // namespace
}  // namespace cinedisc::discmaker
