#include "discmaker/CommandLine.h"

#include "discmaker/DemoDisc.h"
#include "discmaker/DiscMaker.h"

#include <exception>
#include <iostream>
#include <optional>

namespace cinedisc::discmaker {

namespace {

enum ExitStatus { Done = 0, NoDisc = 1, WrongArguments = 2, FilesLeftOut = 3 };

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

std::string helpText() {
    return "Usage: makedisc [OPTION]... DIR FILE-OR-FOLDER...\n"
           "       makedisc [OPTION]... --demo DIR\n"
           "\n"
           "Makes a disc for Cine Disc Viewer in the folder DIR: the catalogue CD.xml and the folder Dicom.\n"
           "Every DICOM file that is named or lies below a named folder is copied unchanged, sorted by "
           "patient,\n"
           "study and series. DIR must be empty, missing, or a disc that makedisc wrote, which is then "
           "replaced.\n"
           "\n"
           "  --demo          make a disc of simulated coronary angiograms\n"
           "  --title TEXT    name of the disc, kept in the catalogue\n"
           "  --program PATH  copy the viewer beside the catalogue\n"
           "  --license FILE  copy this file as license.txt beside the catalogue\n"
           "  --help          show this text\n"
           "\n"
           "Exit status: 0 done; 1 no disc was written; 2 wrong arguments; 3 the disc was written, but "
           "without\n"
           "files that seem to be DICOM and cannot be read.\n";
}

std::variant<MakeRequest, HelpRequest, UsageError> parseCommandLine(std::span<const std::string> arguments) {
    MakeRequest request;
    std::vector<std::filesystem::path> places;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto& argument = arguments[i];
        if (optionsEnded || !argument.starts_with("-") || argument == "-") {
            places.emplace_back(argument);
            continue;
        }
        if (argument == "--help" || argument == "-h") return HelpRequest{};
        if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "--demo") {
            request.demo = true;
        } else if (argument == "--title" || argument == "--program" || argument == "--license") {
            if (++i == arguments.size()) return UsageError{argument + " wants a value"};
            if (argument == "--title") request.title = arguments[i];
            if (argument == "--program") request.enclosures.program = arguments[i];
            if (argument == "--license") request.enclosures.license = arguments[i];
        } else {
            return UsageError{"there is no option " + argument};
        }
    }
    if (places.empty()) return UsageError{"the folder of the disc is missing"};
    request.disc = places.front();
    request.named.assign(places.begin() + 1, places.end());
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
    if (std::holds_alternative<HelpRequest>(parsed)) {
        std::cout << helpText();
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
