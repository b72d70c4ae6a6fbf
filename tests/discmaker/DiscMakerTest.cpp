#include "discmaker/Anonymiser.h"
#include "discmaker/CommandLine.h"
#include "discmaker/DiscError.h"
#include "discmaker/DiscMaker.h"
#include "discmaker/FileCopy.h"
#include "discmaker/ProgressLine.h"
#include "tests/discmaker/DiscFiles.h"
#include "tests/support/DicomBuilder.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dctk.h>
#include <gmock/gmock.h>

#include <csignal>
#include <utility>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

namespace cinedisc::discmaker {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::DicomBuilder;
using test::filesBelow;
using test::playedFiles;
using test::writeFile;
using testing::HasSubstr;
using testing::Not;

DicomBuilder image(const std::string& patient, int instance, int frames = 1) {
    auto builder = DicomBuilder::image(8, 8, frames);
    builder.text({0x0008, 0x0005}, "CS", "ISO_IR 144")
        .text({0x0008, 0x0018}, "UI", "1.2.9." + std::to_string(instance))
        .text({0x0008, 0x0032}, "TM", "235900")
        .text({0x0010, 0x0010}, "PN", patient)
        .text({0x0020, 0x000D}, "UI", "1.2.77")
        .text({0x0020, 0x000E}, "UI", "1.2.77.3")
        .text({0x0020, 0x0011}, "IS", "4")
        .text({0x0020, 0x0013}, "IS", std::to_string(instance));
    if (frames == 1) builder.text({0x0008, 0x002A}, "DT", "20240522080000");
    builder.gradientPixels();
    return builder;
}

class DiscMakerTest : public testing::Test {
  protected:
    DiscMakerTest() : root_(temporary_.path().toStdString()), input_(root_ / "in") {
        for (const char* name : {"deep", "img"}) fs::create_directories(input_ / name);
        request_.disc = root_ / "out";
        request_.title = "Title & more";
        request_.named = {input_};
    }

    DiscSummary make() {
        reports_.clear();
        return makeDisc(
            request_, [this](const std::string& text) { reports_ += text + "\n"; },
            [this](std::size_t done, std::size_t all) { isDone_ = done == all; });
    }
    int run(std::vector<std::string> arguments) { return runCommandLine(arguments, bin_); }

    QTemporaryDir temporary_;
    fs::path root_, input_, bin_ = root_ / "release/bin",
                            series_ = root_ / "out/Dicom/Patient000/Study01/Series01";
    DiscRequest request_;
    std::string reports_;
    bool isDone_ = false;
};

TEST_F(DiscMakerTest, PutsEveryFileOnTheDiscOnceOrTellsWhyNot) {
    const char* cyrillic = "\xB8\xD2\xD0\xDD\xDE\xD2";  // in ISO 8859-5
    image(cyrillic, 2, 3).writeTo(input_ / "x10");
    image(cyrillic, 1).writeTo(input_ / "deep/last & first.bin");
    image("Other]]>B^<i>&\"", 1, 2).writeTo(input_ / "twin");
    fs::copy(input_ / "x10", input_ / "x9");
    image("Cut", 5, 3).writeTo(input_ / "part");
    fs::resize_file(input_ / "part", fs::file_size(input_ / "part") - 64);
    image("Cut", 6).writeTo(input_ / "cut");
    fs::resize_file(input_ / "cut", 160);  // within the meta header
    image("Cut", 7).writeTo(input_ / "bare");
    fs::resize_file(input_ / "bare", fs::file_size(input_ / "bare") - 8);
    DicomBuilder report;
    report.text({0x0010, 0x0020}, "LO", "8");
    report.writeTo(input_ / "deep/report.dcm");
    writeFile(input_ / "readme.txt", "Not a picture, but with room for a preamble." + std::string(400, '.'));
    for (const char* target : {"in", "in/x10", "nowhere"})
        fs::create_symlink(root_ / target, input_ / ("link" + std::to_string(std::string(target).size())));
    fs::create_symlink("/dev/null", input_ / "device");
    fs::create_directory(root_ / "more");
    fs::create_symlink("loop", root_ / "more/loop");
    writeFile(input_ / "EMPTY.DCM", "");
    for (const auto& [name, content] : filesBelow(input_))
        fs::permissions(input_ / name, fs::perms::owner_read);

    request_.named = {input_, input_ / "x10", root_ / "more"};
    const auto before = filesBelow(input_);
    const auto summary = make();
    EXPECT_TRUE(isDone_);
    EXPECT_EQ(filesBelow(input_), before);
    const auto& intake = summary.intake;
    EXPECT_EQ(std::tuple(summary.patients, summary.files, summary.missing), std::tuple(3u, 4u, 1u));
    EXPECT_EQ(std::tuple(intake.notDicom, intake.documents, intake.duplicates), std::tuple(1u, 1u, 1u));
    EXPECT_EQ(std::tuple(intake.unshowable, intake.damaged), std::tuple(3u, 1u)) << reports_;
    const auto played = playedFiles(request_.disc);
    for (const auto& [name, content] : before) {
        const auto copies = std::ranges::count(played, content);
        EXPECT_LE(copies, 1) << name;
        EXPECT_TRUE(copies == 1 || name == "readme.txt" || reports_.find(name) != std::string::npos) << name;
    }
    for (const char* text : {"x9: the same as ", "twin: they differ, but have one instance UID", "damaged ",
                             "part: frame 3 of 3: ", "report.dcm: ", "loop: "})
        EXPECT_THAT(reports_, HasSubstr(text));
    const auto catalogue = contentOf(request_.disc / "CD.xml");
    for (const char* text : {"=\"UTF-8\"?>\n<!--", "<disc title=\"Title &amp; more\">", "Иванов  (P-1)",
                             "Other]]&gt;B, &lt;i&gt;", "Series 4: XA (1 run, 1 image)", "Run 1: 3 frames",
                             "Run 1: 2 frames", "Image 2"})
        EXPECT_THAT(catalogue, HasSubstr(text));
    EXPECT_NE(fs::status(series_ / "IM00001.dcm").permissions() & fs::perms::owner_write, fs::perms::none);

    const auto readMe = [&] { return contentOf(request_.disc / "README.TXT"); };
    EXPECT_TRUE(!fs::exists(request_.disc / "Other") && readMe().find("Other") == std::string::npos);
    request_.keep = true;
    make();
    EXPECT_THAT(readMe(), HasSubstr("Other "));
    EXPECT_EQ(playedFiles(request_.disc), played);
    const auto others = filesBelow(request_.disc / "Other");
    ASSERT_EQ(others.size(), 4u);
    for (const char* name : {"cut", "bare", "deep/report.dcm", "EMPTY.DCM"})
        EXPECT_TRUE(std::ranges::any_of(others, [&](const auto& o) { return o.second == before.at(name); }));
}

TEST_F(DiscMakerTest, FollowsADirectory) {
    image("A", 1).writeTo(input_ / "img/b.");
    auto bare = image("A", 2);
    bare.form.preamble = bare.form.metaHeader = test::FilePart::Absent;
    bare.writeTo(input_ / "img/c;1");
    image("A", 3).writeTo(root_ / "outside");
    writeFile(input_ / "TEXT", "no DICOM");
    DcmDicomDir directory((input_ / "DICOMDIR").c_str());
    for (const char* fileId : {"IMG\\C", "IMG\\B", "GONE", "..\\OUTSIDE", "TEXT"}) {
        auto* record = new DcmDirectoryRecord(ERT_Private, nullptr, OFFilename());
        record->putAndInsertString(DCM_ReferencedFileID, fileId);
        directory.getRootRecord().insertSub(record);
    }
    ASSERT_TRUE(directory.write().good());
    const std::vector<std::string> listed{contentOf(input_ / "img/c;1"), contentOf(input_ / "img/b.")};
    for (const auto& named : {input_, input_ / "DICOMDIR"}) {
        request_.named = {named};
        const auto summary = make();
        EXPECT_EQ(playedFiles(request_.disc), listed) << reports_;
        EXPECT_EQ(std::tuple(summary.missing, summary.intake.unshowable, summary.intake.directories),
                  std::tuple(2u, 1u, 1u));
        EXPECT_THAT(reports_, testing::AllOf(HasSubstr("lists GONE"), HasSubstr("TEXT: ")));
    }
    fs::resize_file(input_ / "DICOMDIR", fs::file_size(input_ / "DICOMDIR") - 9);
    request_.named = {input_};
    EXPECT_EQ(make().missing, 1u) << reports_;
}

TEST_F(DiscMakerTest, RefusesWhatWouldDestroyOrRepeatItsInput) {
    image("A", 1).writeTo(input_ / "a.dcm");
    make();
    const auto before = filesBelow(request_.disc);
    for (const auto& named : {request_.disc, request_.disc / "Dicom", root_ / "missing", input_ / "deep"}) {
        request_.named = {named};
        EXPECT_THROW(make(), DiscError) << named;
        EXPECT_EQ(filesBelow(request_.disc), before);
    }
    request_.named = {root_};
    EXPECT_EQ(make().files, 1u) << "the disc below a named folder is passed over";
    writeFile(root_ / "x.iso", "a letter");
    request_.image = root_ / "x.iso";
    EXPECT_THROW(make(), DiscError);
    EXPECT_EQ(contentOf(root_ / "x.iso"), "a letter");
}

TEST_F(DiscMakerTest, TellsWhenCopyingFails) {
    image("A", 1, 100).writeTo(input_ / "a.dcm");
    fs::create_hard_link(input_ / "a.dcm", root_ / "same");
    EXPECT_THAT(copyFile(input_ / "a.dcm", root_ / "same").fault, HasSubstr("changed"));
    EXPECT_FALSE(fs::exists(root_ / "same"));
    EXPECT_THAT(copyFile(root_ / "none", root_ / "copy").fault, HasSubstr("cannot be read"));
    EXPECT_THROW(copyFile(input_ / "a.dcm", root_ / "none/copy"), DiscError);
    EXPECT_THROW(requireSame(input_ / "a.dcm", 1), DiscError);

    image("A", 1, 100).writeTo(input_ / "a.dcm");
    const auto disc = std::string(32769, ' ') + "CD001";
    writeFile(root_ / "old.iso", disc);
#ifdef RLIMIT_FSIZE
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4096, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_THROW(make(), DiscError) << "as on a full medium";
    image("A", 1).writeTo(input_ / "a.dcm");
    request_.image = root_ / "old.iso";
    EXPECT_THAT([&] { make(); }, testing::ThrowsMessage<DiscError>(HasSubstr("FAILURE")));
    EXPECT_THROW(writeText("/dev/full", "x"), DiscError);
    EXPECT_EQ(contentOf(*request_.image), disc) << "the old image";
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
#endif
    EXPECT_FALSE(fs::exists(request_.disc));
}

TEST_F(DiscMakerTest, AnonymisesTheWholeDisc) {
    for (int i = 1; i <= 2; ++i) {
        auto file = image("Miller^Jane", i, 100);  // not kept in memory
        test::DicomItem reference;
        reference.text({0x0008, 0x1155}, "UI", "1.2.9.1").text({0x0040, 0xA123}, "PN", "Miller^Jane");
        file.sequence({0x0008, 0x1140}, {reference}).text({0x0010, 0x0020}, "LO", "4711-88");
        file.text({0x0008, 0x0020}, "DA", "20240522").text({0x0008, 0x0080}, "LO", "Clinic");
        file.text({0x0008, 0x002A}, "DT", "20240522101500").text({0x0018, 0x1078}, "DT", "20240522");
        file.text({0x0070, 0x0082}, "DA", "20240522").text({0x0008, 0x0033}, "TM", "101500");
        file.text({0x0018, 0x0024}, "SH", "on 20240522").text({0x0018, 0x1003}, "LO", "note");
        file.text({0x0009, 0x0010}, "LO", "MINE").text({0x0009, 0x1001}, "LO", "Jane Miller");
        file.text({0x0008, 0x1090}, "LO", "Room of miller").text({0x0008, 0x0070}, "LO", "Maker");
        file.text({0x5000, 0x2500}, "LO", "curve note").text({0x6002, 0x1500}, "LO", "overlay note");
        file.sequence({0x0070, 0x0001}, {test::DicomItem().text({0x0070, 0x0006}, "ST", "note")});
        if (i == 2) file.text({0x0028, 0x0301}, "CS", "YES");
        file.writeTo(input_ / std::to_string(i));
        std::fstream(input_ / std::to_string(i), std::ios::in | std::ios::out) << "preamble";
    }
    image("Zoe", 3, 3).writeTo(input_ / "cut");
    fs::resize_file(input_ / "cut", fs::file_size(input_ / "cut") - 64);
    request_.anonymise = true;
    const auto open = [](const fs::path& path) { return dicom::DicomFile::open(path.string()).value(); };
    const auto source = open(input_ / "1");
    const auto summary = make();
    EXPECT_EQ(std::tuple(summary.patients, summary.files, summary.intake.unshowable), std::tuple(1u, 2u, 1u));
    EXPECT_THAT(reports_, HasSubstr("cut: it cannot be anonymised"));
    for (const auto& [name, content] : filesBelow(request_.disc))
        for (const char* secret :
             {"Mill", "mill", "4711-8", "20240522", "1.2.77", "1.2.9", "Clinic", "preamble", "note"})
            EXPECT_THAT(content, Not(HasSubstr(secret))) << name;
    auto first = open(series_ / "IM00001.dcm"), second = open(series_ / "IM00002.dcm");
    EXPECT_EQ(test::samplesOf(*first, 1), test::samplesOf(*source, 1));
    const auto uid = first->header().string({0x0008, 0x0018});
    EXPECT_THAT(uid, testing::StartsWith("2.25."));
    EXPECT_EQ(second->header().items({0x0008, 0x1140}).at(0).string({0x0008, 0x1155}), uid);
    std::string values;
    for (const auto& line : describeHeader(*second)) values += line.keyword + "=" + line.value + ";";
    for (const char* value :
         {";PatientName=Case 1;", ";PatientID=C1;", ";PatientIdentityRemoved=YES;", ";StudyDate=;",
          ";AcquisitionDateTime=19110101000000;", ";PresentationCreationDate=19110101;",
          ";ContentTime=000000;", ";DeidentificationMethod=Basic Application Confidentiality Profile;",
          ";Manufacturer=Maker;", ";InstitutionName=ANONYMOUS;", ";SeriesNumber=4;", ";CodeValue=113100;",
          ";CodeMeaning=Basic", ";LongitudinalTemporalInformationModified=REMOVED;"})
        EXPECT_THAT(values, HasSubstr(value));
    EXPECT_THAT(reports_, testing::AllOf(HasSubstr("2: names may be burned"), Not(HasSubstr("1: names"))));
    first = second = nullptr;  // a disc with files that are open is not replaced on every system
    make();
    EXPECT_NE(open(series_ / "IM00001.dcm")->header().string({0x0008, 0x0018}), uid);
}

TEST_F(DiscMakerTest, TellsWhichPicturesMayShowNames) {
    const std::tuple<dicom::Tag, const char*, bool> cases[] = {
        {{0x0008, 0x0060}, "XA", false},  {{0x0008, 0x0060}, "US", true},
        {{0x0008, 0x0060}, "IVUS", true}, {{0x0008, 0x0064}, "WSD", true},
        {{0x0028, 0x0301}, "NO", false},  {{0x0008, 0x0016}, "1.2.840.10008.5.1.4.1.1.7.2", true},
    };
    for (const auto& [tag, value, may] : cases) {
        auto file = image("A", 1);
        file.text(tag, tag.element == 0x0016 ? "UI" : "CS", value);
        file.writeTo(input_ / "a");
        EXPECT_EQ(mayShowNames(input_ / "a"), may) << value;
    }
}

TEST_F(DiscMakerTest, WritesImagesInTheOrderOfReading) {
    for (const int number : {3, 1, 2, 11}) {
        auto file = image("A", number, 5000);
        file.text({0x0020, 0x000D}, "UI", "1.2." + std::to_string(number));
        file.text({0x0008, 0x0020}, "DA", std::to_string(20240100 + number));
        file.writeTo(input_ / std::to_string(number));
    }
    for (const char* name : {"cinedisc", "linux/10", "linux/9"})
        writeFile(root_ / "programs" / name, std::string("program ") + name);
    request_.enclosures.programs = {root_ / "programs/cinedisc", root_ / "programs"};
    request_.image = root_ / "disc.iso";
    const auto expectDisc = [&](const fs::path& folder, const char* imageName, const std::string& title) {
        const auto bytes = contentOf(root_ / imageName);
        auto files = playedFiles(folder);
        files.insert(files.begin(), {std::string("program linux/9"), std::string("program linux/10")});
        auto at = bytes.find(contentOf(folder / "CD.xml"));
        for (const auto& file : files) EXPECT_LT(std::exchange(at, bytes.find(file)), bytes.find(file));
        EXPECT_LT(at, bytes.size());
        EXPECT_EQ(bytes.substr(17 * 2048 + 88, 2), "%/") << "Joliet";
        EXPECT_THAT(bytes, HasSubstr("IM00001.dcm")) << "Rock Ridge";
        for (const char* file : {"README.TXT", "CD.xml"})
            EXPECT_THAT(contentOf(folder / file), HasSubstr(title));
        return files.size() - 2;
    };
    make();
    EXPECT_EQ(expectDisc(request_.disc, "disc.iso", "Title"), 4u);
    request_.size = 1'700'000;
    writeFile(root_ / "disc-2.iso", "a letter");
    EXPECT_THROW(make(), DiscError);
    fs::remove(root_ / "disc-2.iso");
    EXPECT_EQ(make().discs, 2u);
    EXPECT_FALSE(fs::exists(request_.disc / "CD.xml") || fs::exists(request_.disc / "Dicom"));
    EXPECT_EQ(expectDisc(request_.disc / "Disc1", "disc-1.iso", "(1 of 2)"), 2u);
    EXPECT_EQ(expectDisc(request_.disc / "Disc2", "disc-2.iso", "(2 of 2)"), 2u);
    EXPECT_THAT(contentOf(root_ / "disc-2.iso"), HasSubstr("CINEDISC_2")) << "the volume's name";
    request_.size = 1'010'000;
    EXPECT_THROW(make(), DiscError);
    request_.size.reset();
    make();
    EXPECT_FALSE(fs::exists(request_.disc / "Disc1"));
}

TEST_F(DiscMakerTest, LaysTheViewersBesideTheCatalogue) {
    image("A", 1).writeTo(input_ / "a.dcm");
    const auto out = request_.disc.string(), in = input_.string();
    for (const char* name : {"release/bin/cinedisc", "release/bin/license.txt", "windows/bin/cinedisc.exe"})
        writeFile(root_ / name, name);
    fs::permissions(bin_ / "cinedisc", fs::perms::owner_exec, fs::perm_options::add);
    for (int i = 0; i < 2; ++i) ASSERT_EQ(run({out, in, "--autorun"}), 0) << "and once more";
#ifndef _WIN32
    EXPECT_NE(fs::status(request_.disc / "cinedisc").permissions() & fs::perms::owner_exec, fs::perms::none);
#endif
    EXPECT_EQ(contentOf(request_.disc / "license.txt"), "release/bin/license.txt");
    EXPECT_THAT(contentOf(request_.disc / "autorun.inf"), HasSubstr("open=cinedisc.exe\r\n"));
    for (const char* text : {"Coronary angiograms\r\n", "start cinedisc.exe", "Linux: start cinedisc",
                             "CD.xml ", "not a medical device"})
        EXPECT_THAT(contentOf(request_.disc / "README.TXT"), HasSubstr(text));
    writeFile(root_ / "linux/disc/linux/bin/cinedisc", "program");
    ASSERT_EQ(run({out, in}), 0);
    EXPECT_EQ(contentOf(request_.disc / "linux/bin/cinedisc"), "program");
    EXPECT_TRUE(fs::exists(request_.disc / "cinedisc.exe"));
    writeFile(bin_ / "programs/viewer", "");
    EXPECT_EQ(findEnclosures(bin_).programs, std::vector{bin_ / "programs"});

    writeFile(input_ / "cut.dcm", contentOf(input_ / "a.dcm").substr(0, 160));
    const auto given =
        std::get<MakeRequest>(parseCommandLine(std::vector<std::string>{"--program", "mine", out, in}, bin_));
    EXPECT_EQ(given.disc.enclosures.programs, std::vector<fs::path>{"mine"});
    EXPECT_EQ(run({"--program", (bin_ / "license.txt").string(), out, in}), 3);
    for (const auto& arguments :
         {std::vector{std::string("--program"), std::string("none")}, {"--autorun"}}) {
        auto all = arguments;
        all.insert(all.end(), {(root_ / "other").string(), in});
        testing::internal::CaptureStderr();
        EXPECT_EQ(run(all), 1);
        EXPECT_THAT(testing::internal::GetCapturedStderr(),
                    HasSubstr(all[0] == "--program" ? "none" : "exe"));
        EXPECT_FALSE(fs::exists(root_ / "other"));
    }
    testing::internal::CaptureStderr();
    EXPECT_EQ(run({}), 2);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("makedisc --help"));
    EXPECT_EQ(run({"--version"}), 0);
}

TEST(ProgressLine, IsABarForAPersonAndTenLinesInALog) {
    for (const std::size_t all : {7u, 1000u, 4321u}) {
        ProgressLine log(ProgressLine::Reader::Log), bar(ProgressLine::Reader::Person);
        std::size_t lines = 0, bars = 0;
        for (std::size_t done = 1; done <= all; ++done) {
            lines += !log.next(done, all).empty();
            bars += !bar.next(done, all).empty();
        }
        EXPECT_EQ(lines, all < 1000 ? 0u : 10u);
        EXPECT_EQ(bars, std::min<std::size_t>(all, 100));
    }
    testing::internal::CaptureStderr();
    EXPECT_THAT(ProgressLine().next(100, 1000), HasSubstr("checked")) << "output to a file";
    { ProgressLine(ProgressLine::Reader::Person).next(1, 100); }
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::EndsWith(" \r")) << "of a work that failed";
}

TEST(CommandLine, SaysWhatIsWrongWithTheArguments) {
    const auto parse = [](const std::vector<std::string>& arguments) {
        return parseCommandLine(arguments, "/nowhere");
    };
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "folder of the disc is missing"},
        {{"disc"}, "no DICOM files or folders"},
        {{"--demo", "disc", "file"}, "one folder and no files"},
        {{"--demo", "disc", "--anonymise"}, "is not kept"},
        {{"disc", "file", "--keep", "--anonymise"}, "exclude each other"},
        {{"disc", "file", "--size", "7X"}, "700M"},
        {{"disc", "file", "--size", "-1"}, "700M"},
        {{"disc", "file", "--title"}, "Missing value after '--title'"},
        {{"--fast", "disc", "file"}, "Unknown option 'fast'"},
    };
    for (const auto& [arguments, message] : cases)
        EXPECT_THAT(std::get<UsageError>(parse(arguments)).message, HasSubstr(message));
    const auto given = std::get<MakeRequest>(
        parse({"disc\xE9", "--title", "Ł", "--size", "4.7G", "--iso", "i", "--keep", "--", "--demo"}));
    EXPECT_FALSE(given.demo || given.disc.anonymise || given.disc.enclosures.license);
    EXPECT_TRUE(given.disc.keep);
    EXPECT_EQ(std::tuple(given.disc.title, given.disc.disc, given.disc.image, given.disc.size),
              std::tuple("Ł", "disc\xE9", fs::path("i"), 4'700'000'000u));
    EXPECT_EQ(given.disc.named, std::vector<fs::path>{"--demo"});

    const auto help = std::get<Answer>(parse({"disc", "--fast", "--help"})).text;
    const auto manual = contentOf(CINEDISC_MANUAL);
    EXPECT_THAT(help, HasSubstr("Exit status"));
    const QRegularExpression option("--([a-z]+)");
    int options = 0;
    for (auto all = option.globalMatch(QString::fromStdString(help)); all.hasNext(); ++options)
        EXPECT_THAT(manual, HasSubstr("\\-\\-" + all.next().captured(1).toStdString()));
    EXPECT_GE(options, 10);
    EXPECT_THAT(std::get<Answer>(parse({"--version"})).text, testing::MatchesRegex("makedisc .+\n"));
}

}  // namespace
}  // namespace cinedisc::discmaker
