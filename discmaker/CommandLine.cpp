#include "discmaker/CommandLine.h"

#include "discmaker/DemoDisc.h"
#include "discmaker/ProgressLine.h"

#include <QCommandLineParser>

#include <exception>
#include <iostream>

namespace cinedisc::discmaker {

namespace {

enum ExitStatus { Done = 0, NoDisc = 1, WrongArguments = 2, FilesLeftOut = 3 };

constexpr const char* description =
    "Makes a disc for Cine Disc Viewer in the folder dir: the catalogue CD.xml and the folder Dicom.\n"
    "Every DICOM file that is named, lies below a named folder or is listed by a DICOMDIR there is copied\n"
    "unchanged, once, sorted by patient, study and series, or in the DICOMDIR's order. Every frame is\n"
    "decoded; what cannot be shown is left out and told. dir must be empty, missing, or a disc that\n"
    "makedisc wrote, which is then replaced.\n"
    "\n"
    "Exit status: 0 done; 1 no disc was written; 2 wrong arguments; 3 the disc was written, but files that\n"
    "seem to be DICOM are damaged, missing, or left out because they cannot be shown.";

void tell(const std::string& message) { std::cerr << "makedisc: " << message << "\n"; }

std::string amount(std::size_t number, const std::string& what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

int make(const MakeRequest& request) {
    if (request.disc.enclosures.programs.empty()) tell("no viewer lies beside makedisc: the disc has none");
    if (request.demo) {
        makeDemoDisc(request.disc);
        return Done;
    }
    const auto summary = makeDisc(request.disc, tell, ProgressLine());
    std::cout << request.disc.disc.string() << ": " << amount(summary.patients, "patient") << ", "
              << amount(summary.files, "file");
    if (summary.discs > 1) std::cout << ", " << amount(summary.discs, "disc");
    std::cout << "\n";
    const auto& intake = summary.intake;
    if (intake.notDicom > 0) tell("left out " + amount(intake.notDicom, "file") + " (not DICOM)");
    if (intake.directories > 0) tell("left out " + amount(intake.directories, "file") + " (DICOMDIR)");
    return intake.unshowable + intake.damaged + summary.missing > 0 ? FilesLeftOut : Done;
}

/// "700M" or "4.7G".
std::optional<std::uint64_t> sizeFrom(const std::string& text) {
    auto number = QString::fromStdString(text).toUpper();
    double unit = 1;
    for (const auto& [letter, factor] : {std::pair('K', 1e3), {'M', 1e6}, {'G', 1e9}})
        if (number.endsWith(letter)) unit = factor;
    if (unit > 1) number.chop(1);
    bool isNumber = false;
    const double bytes = number.toDouble(&isNumber) * unit;
    if (!isNumber || !(bytes >= 1) || bytes > 1e15) return {};
    return static_cast<std::uint64_t>(bytes);
}

}  // namespace

std::variant<MakeRequest, Answer, UsageError> parseCommandLine(std::span<const std::string> arguments,
                                                               const std::filesystem::path& beside) {
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
        "Put this file, or what this folder holds, beside the catalogue, instead of the viewers that lie "
        "beside makedisc. May be given several times.",
        "path");
    const QCommandLineOption autorun("autorun", "Have Windows offer to start the viewer (autorun.inf).");
    const QCommandLineOption image("iso", "Write an ISO 9660 image of the disc, too. Needs xorriso.", "file");
    const QCommandLineOption size(
        "size",
        "Bytes that a disc holds, such as 700M or 4.7G (counted in thousands). What does not fit is split "
        "between studies into dir/Disc1, dir/Disc2 ...; images get -1, -2 ... in their names.",
        "bytes");
    const QCommandLineOption anonymise(
        "anonymise",
        "Remove who the patients are, by the basic profile of DICOM PS3.15, annex E. Names that are burned "
        "into pictures stay; pictures that may have some are told.");
    const QCommandLineOption keep(
        "keep", "Put what cannot be shown into the folder Other of the disc, instead of leaving it out.");
    const QCommandLineOption license(
        "license", "Put this file beside the catalogue as license.txt, instead of the viewer's.", "file");
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addOptions({demo, title, program, autorun, license, image, size, anonymise, keep, help, version});
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
    MakeRequest result;
    auto& request = result.disc;
    result.demo = parser.isSet(demo);
    request.keep = parser.isSet(keep);
    request.title = value(title);
    request.anonymise = parser.isSet(anonymise);
    if (parser.isSet(image)) request.image = value(image);
    if (parser.isSet(size) && !(request.size = sizeFrom(value(size))))
        return UsageError{"--size takes a number of bytes such as 700M or 4.7G"};
    request.enclosures = findEnclosures(beside);
    if (parser.isSet(program)) {
        const auto paths = parser.values(program);
        request.enclosures.programs.clear();
        for (const auto& path : paths)
            request.enclosures.programs.emplace_back(path.toLatin1().toStdString());
    }
    request.enclosures.autorun = parser.isSet(autorun);
    if (parser.isSet(license)) request.enclosures.license = value(license);
    for (const auto& place : parser.positionalArguments())
        request.named.emplace_back(place.toLatin1().toStdString());
    if (request.named.empty()) return UsageError{"the folder of the disc is missing"};
    request.disc = request.named.front();
    request.named.erase(request.named.begin());
    if (result.demo && !request.named.empty())
        return UsageError{"the demo disc takes one folder and no files"};
    if (result.demo && (request.keep || request.anonymise || request.size))
        return UsageError{"the demo disc is not kept, anonymised or split"};
    if (request.keep && request.anonymise)
        return UsageError{
            "what cannot be shown cannot be anonymised: --keep and --anonymise exclude each other"};
    if (!result.demo && request.named.empty()) return UsageError{"no DICOM files or folders are named"};
    if (request.title.empty()) request.title = result.demo ? "Cine Disc Viewer demo" : "Coronary angiograms";
    return result;
}

int runCommandLine(std::span<const std::string> arguments, const std::filesystem::path& beside) {
    const auto parsed = parseCommandLine(arguments, beside);
    if (const auto* error = std::get_if<UsageError>(&parsed)) {
        tell(error->message + "\nmakedisc --help tells more.");
        return WrongArguments;
    }
    if (const auto* answer = std::get_if<Answer>(&parsed)) {
        std::cout << answer->text;
        return Done;
    }
    try {
        return make(std::get<MakeRequest>(parsed));
    } catch (const std::exception& error) {
        tell(error.what());
        return NoDisc;
    }
}

}  // namespace cinedisc::discmaker
