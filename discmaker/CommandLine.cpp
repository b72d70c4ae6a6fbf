#include "discmaker/CommandLine.h"

#include "discmaker/DemoDisc.h"
#include "discmaker/DiscMaker.h"
#include "platform/io/ProgramArguments.h"

#include <QCommandLineParser>

#include <exception>
#include <iostream>

namespace cinedisc::discmaker {

namespace {

enum ExitStatus { Done = 0, NoDisc = 1, WrongArguments = 2, FilesLeftOut = 3 };

constexpr const char* description =
    "Makes a disc for Cine Disc Viewer in the folder dir: the catalogue CD.xml and the folder Dicom.\n"
    "Every DICOM file that is named or lies below a named folder is copied unchanged, sorted by patient,\n"
    "study and series. dir must be empty, missing, or a disc that makedisc wrote, which is then replaced.\n"
    "\n"
    "Exit status: 0 done; 1 no disc was written; 2 wrong arguments; 3 the disc was written, but without\n"
    "files that seem to be DICOM and cannot be read.";

void tell(const std::string& message) { std::cerr << "makedisc: " << message << "\n"; }

std::string amount(std::size_t number, const std::string& what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

int make(const MakeRequest& request) {
    if (request.demo) {
        makeDemoDisc(request.disc, request.title, request.enclosures);
        return Done;
    }
    const auto summary = makeDisc(request.disc, request.title, request.named, request.enclosures, tell);
    std::cout << request.disc.string() << ": " << amount(summary.patients, "patient") << ", "
              << amount(summary.files, "file") << "\n";
    if (summary.notDicom > 0) tell("left out " + amount(summary.notDicom, "file") + " (not DICOM)");
    if (summary.directories > 0) tell("left out " + amount(summary.directories, "file") + " (DICOMDIR)");
    return summary.unreadable > 0 ? FilesLeftOut : Done;
}

}  // namespace

std::variant<MakeRequest, Answer, UsageError> parseCommandLine(std::span<const std::string> arguments) {
    // Names of files are any bytes; each goes through the parser as one letter.
    QStringList letters{"makedisc"};
    for (const auto& argument : arguments)
        letters << QString::fromLatin1(argument.data(), static_cast<qsizetype>(argument.size()));
    const QCommandLineOption help({"h", "help"}, "Show this text.");
    const QCommandLineOption version({"v", "version"}, "Show the version.");
    const QCommandLineOption demo("demo",
                                  "Make a disc of simulated coronary angiograms; no files are named.");
    const QCommandLineOption title("title", "Name of the disc, kept in the catalogue.", "text");
    const QCommandLineOption program(
        "program",
        "Copy this program beside the catalogue, or what this folder holds; may be given "
        "several times. Without it, the folder \"programs\" beside makedisc.",
        "path");
    const QCommandLineOption autorun("autorun", "Have Windows offer to start the viewer (autorun.inf).");
    const QCommandLineOption license("license", "Copy this file as license.txt beside the catalogue.",
                                     "file");
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addOptions({demo, title, program, autorun, license, help, version});
    parser.addPositionalArgument("dir", "The folder that becomes the disc.");
    parser.addPositionalArgument("files", "DICOM files, and folders that hold some.", "[file-or-folder...]");

    const bool understood = parser.parse(letters);
    if (parser.isSet(help))
        return Answer{parser.helpText().replace("<executable_name>", "makedisc").toStdString()};
    if (parser.isSet(version)) return Answer{"makedisc " CINEDISC_VERSION "\n"};
    if (!understood) return UsageError{parser.errorText().toLatin1().toStdString()};

    const auto value = [&parser](const QCommandLineOption& option) {
        return parser.value(option).toLatin1().toStdString();
    };
    MakeRequest request;
    request.demo = parser.isSet(demo);
    request.title = value(title);
    for (const auto& path : parser.values(program))
        request.enclosures.programs.emplace_back(path.toLatin1().toStdString());
    request.enclosures.autorun = parser.isSet(autorun);
    if (parser.isSet(license)) request.enclosures.license = value(license);
    for (const auto& place : parser.positionalArguments())
        request.named.emplace_back(place.toLatin1().toStdString());
    if (request.named.empty()) return UsageError{"the folder of the disc is missing"};
    request.disc = request.named.front();
    request.named.erase(request.named.begin());
    if (request.demo && !request.named.empty())
        return UsageError{"the demo disc takes one folder and no files"};
    if (!request.demo && request.named.empty()) return UsageError{"no DICOM files or folders are named"};
    if (request.title.empty()) request.title = request.demo ? "Cine Disc Viewer demo" : "Coronary angiograms";
    return request;
}

int runCommandLine(std::span<const std::string> arguments) {
    const auto parsed = parseCommandLine(arguments);
    if (const auto* error = std::get_if<UsageError>(&parsed)) {
        tell(error->message + "\nmakedisc --help tells more.");
        return WrongArguments;
    }
    if (const auto* answer = std::get_if<Answer>(&parsed)) {
        std::cout << answer->text;
        return Done;
    }
    auto request = std::get<MakeRequest>(parsed);
    try {
        const auto beside = std::filesystem::path(programPath()).parent_path() / "programs";
        if (request.enclosures.programs.empty() && std::filesystem::is_directory(beside))
            request.enclosures.programs = {beside};
        return make(request);
    } catch (const std::exception& error) {
        tell(error.what());
        return NoDisc;
    }
}

}  // namespace cinedisc::discmaker
