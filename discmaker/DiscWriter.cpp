#include "discmaker/DiscWriter.h"

#include "discmaker/CatalogueWriter.h"
#include "discmaker/DiscPlanner.h"
#include "discmaker/FileCopy.h"
#include "discmaker/ParallelFor.h"

#include <utility>
#include <vector>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

void writeDisc(const fs::path& disc, const DiscPlan& plan, const Enclosures& enclosures,
               const ContentWriter& write, Workers workers, const std::vector<fs::path>& others) {
    copyEnclosures(enclosures, disc);
    writeText(disc / "README.TXT", readMe(plan, enclosures, !others.empty()));
    std::vector<std::pair<std::size_t, fs::path>> files;
    for (const auto& patient : plan.patients) {
        for (const auto& study : patient.studies) {
            for (const auto& series : study.series) {
                const auto place = disc / "Dicom" / patient.folder / study.folder / series.folder;
                fs::create_directories(place);
                for (const auto& file : series.files) files.emplace_back(file.content, place / file.name);
            }
        }
    }
    parallelFor(files.size(), workers == Workers::One ? 1 : processorCount(),
                [&](std::size_t i) { write(files[i].first, files[i].second); });
    if (!others.empty()) fs::create_directory(disc / "Other");
    for (std::size_t i = 0; i < others.size(); ++i)
        fs::rename(others[i], disc / "Other" / numbered("OT", i + 1, others.size(), 5, ".dcm"));
    writeText(disc / "CD.xml", catalogueXml(plan));
}

}  // namespace cinedisc::discmaker
