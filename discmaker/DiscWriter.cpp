#include "discmaker/DiscWriter.h"

#include "discmaker/CatalogueWriter.h"
#include "discmaker/DiscError.h"
#include "discmaker/ParallelFor.h"

#include <fstream>
#include <utility>
#include <vector>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

constexpr const char* windowsProgram = "cinedisc.exe";

void writeText(const fs::path& path, const std::string& text) {
    std::ofstream stream(path, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) throw DiscError("cannot write " + path.string());
}

void copyEnclosures(const Enclosures& enclosures, const fs::path& folder) {
    const auto copy = [](const fs::path& from, const fs::path& to) {
        if (!fs::is_regular_file(from)) throw DiscError(from.string() + " is not a file");
        fs::copy_file(from, to);
    };
    for (const auto& program : enclosures.programs) {
        if (fs::is_directory(program)) {
            fs::copy(program, folder, fs::copy_options::recursive);
        } else {
            copy(program, folder / program.filename());
        }
    }
    if (enclosures.license) copy(*enclosures.license, folder / "license.txt");
    if (!enclosures.autorun) return;
    if (!fs::exists(folder / windowsProgram))
        throw DiscError("--autorun needs the program for Windows, " + std::string(windowsProgram));
    const std::string name = windowsProgram;
    writeText(folder / "autorun.inf", "[autorun]\r\nopen=" + name + "\r\nicon=" + name + "\r\n");
}

}  // namespace

void writeDisc(DiscFolder& folder, const DiscPlan& plan, const Enclosures& enclosures,
               const ContentWriter& write, Workers workers) {
    copyEnclosures(enclosures, folder.staging());
    std::vector<std::pair<std::size_t, fs::path>> files;
    for (const auto& patient : plan.patients) {
        for (const auto& study : patient.studies) {
            for (const auto& series : study.series) {
                const auto place = folder.staging() / "Dicom" / patient.folder / study.folder / series.folder;
                fs::create_directories(place);
                for (const auto& file : series.files) files.emplace_back(file.content, place / file.name);
            }
        }
    }
    parallelFor(files.size(), workers == Workers::One ? 1 : processorCount(),
                [&](std::size_t i) { write(files[i].first, files[i].second); });
    writeText(folder.staging() / "CD.xml", catalogueXml(plan));
    folder.publish();
}

}  // namespace cinedisc::discmaker
