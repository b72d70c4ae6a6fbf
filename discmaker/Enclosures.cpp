#include "discmaker/Enclosures.h"

#include "discmaker/DiscError.h"
#include "discmaker/FileCopy.h"
#include "discmaker/Utf8.h"

#include <algorithm>
#include <initializer_list>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

/// The first of the places where something is.
std::optional<fs::path> firstOf(const fs::path& here, std::initializer_list<const char*> places) {
    for (const char* place : places)
        if (fs::exists(here / place)) return (here / place).lexically_normal();
    return {};
}

/// Entry by entry: on some systems the standard library takes any two folders for the same.
void copyAll(const fs::path& from, const fs::path& to) {
    if (fs::is_directory(from)) {
        fs::create_directories(to);
        for (const auto& entry : fs::directory_iterator(from))
            copyAll(entry.path(), to / entry.path().filename());
    } else {
        fs::remove(to);
        fs::copy_file(from, to);
    }
}

}  // namespace

Enclosures findEnclosures(const fs::path& here) {
    Enclosures result;
    const auto add = [&](std::initializer_list<const char*> places) {
        if (auto found = firstOf(here, places)) result.programs.push_back(std::move(*found));
    };
    if (fs::is_directory(here / "programs")) {
        add({"programs"});
    } else {
        // The folder holds a program for any Linux machine.
        add({"../../linux/disc", "cinedisc"});
        add({"cinedisc.exe", "../../windows/bin/cinedisc.exe"});
    }
    result.license =
        firstOf(here, {"license.txt", "../share/cinedisc/license.txt", "../share/doc/cinedisc/license.txt"});
    return result;
}

void copyEnclosures(const Enclosures& enclosures, const fs::path& disc) {
    const auto copy = [](const fs::path& from, const fs::path& to) {
        if (!fs::exists(from)) throw DiscError("there is no file or folder " + from.string());
        copyAll(from, to);
    };
    for (const auto& program : enclosures.programs)
        copy(program, fs::is_directory(program) ? disc : disc / program.filename());
    if (enclosures.license) copy(*enclosures.license, disc / "license.txt");
    if (!enclosures.autorun) return;
    const std::string name = "cinedisc.exe";
    if (!fs::exists(disc / name)) throw DiscError("--autorun needs the program for Windows, " + name);
    writeText(disc / "autorun.inf", "[autorun]\r\nopen=" + name + "\r\nicon=" + name + "\r\n");
}

std::string readMe(const DiscPlan& plan, const Enclosures& enclosures, bool hasOthers) {
    const auto encloses = [&](const char* name) {
        return std::any_of(enclosures.programs.begin(), enclosures.programs.end(),
                           [&](const fs::path& program) {
                               return program.filename() == name || fs::exists(program / name);
                           });
    };
    std::string text = oneLine(plan.title) + "\n\nThis disc holds medical images in DICOM format.\n\n";
    const bool forWindows = encloses("cinedisc.exe"), forLinux = encloses("cinedisc");
    if (forWindows) text += "Windows: start cinedisc.exe.\n";
    if (forLinux) text += "Linux: start cinedisc.\n";
    if (forWindows || forLinux)
        text += "Nothing is installed. Press the first button of the window, then click a patient.\n\n";
    text +=
        "CD.xml       the list of patients, studies and series\n"
        "Dicom        the images, a folder a patient\n";
    if (hasOthers) text += "Other        DICOM files without a picture that can be shown\n";
    if (enclosures.license) text += "license.txt  the licence of the viewer\n";
    text += "\nKeep the disc as safe as any medical record. The viewer is not a medical device.\n";
    std::string lines;
    for (const char letter : text) lines += letter == '\n' ? std::string("\r\n") : std::string(1, letter);
    return lines;
}

}  // namespace cinedisc::discmaker
