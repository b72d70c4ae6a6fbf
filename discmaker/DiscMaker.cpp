#include "discmaker/DiscMaker.h"

#include "discmaker/DiscError.h"
#include "discmaker/DiscPlanner.h"
#include "discmaker/HeaderReader.h"

#include <utility>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

DiscSummary makeDisc(const fs::path& disc, const std::string& title, const std::vector<fs::path>& named,
                     const Enclosures& enclosures, const Report& report) {
    DiscFolder folder(disc);
    DiscSummary summary;
    std::vector<ImageRecord> records;
    std::vector<fs::path> sources;
    for (const auto& path : collectFiles(named, disc, report)) {
        auto read = readRecord(path);
        if (auto* record = std::get_if<ImageRecord>(&read)) {
            records.push_back(std::move(*record));
            sources.push_back(path);
            continue;
        }
        const auto& skipped = std::get<Skipped>(read);
        switch (skipped.reason) {
            case Skipped::Reason::NotDicom:
                ++summary.notDicom;
                break;
            case Skipped::Reason::Directory:
                ++summary.directories;
                break;
            case Skipped::Reason::Unreadable:
                ++summary.unreadable;
                report("left out " + path.string() + ": " + skipped.message);
                break;
        }
    }
    if (records.empty()) throw DiscError("there is no DICOM file among those named");

    const auto plan = planDisc(records, title, PatientOrder::ByName);
    const auto copy = [&](std::size_t number, const fs::path& target) {
        fs::copy_file(sources[number], target);
        // Files from a read-only medium would stand in the way of the next disc in this folder.
        fs::permissions(target, fs::perms::owner_write, fs::perm_options::add);
    };
    writeDisc(folder, plan, enclosures, copy, Workers::One);
    summary.patients = plan.patients.size();
    summary.files = records.size();
    return summary;
}

}  // namespace cinedisc::discmaker
