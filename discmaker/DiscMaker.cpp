#include "discmaker/DiscMaker.h"

#include "discmaker/Anonymiser.h"
#include "discmaker/DiscError.h"
#include "discmaker/DiscFolder.h"
#include "discmaker/DiscImage.h"
#include "discmaker/DiscPlanner.h"
#include "discmaker/HeaderReader.h"

#include <utility>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t sectorBytes = 2048;

DiscPlan planOf(const std::vector<Intake::Picture>& pictures, const std::string& title) {
    if (pictures.empty()) throw DiscError("there is no DICOM file that can be shown among those named");
    std::vector<ImageRecord> records;
    for (const auto& picture : pictures) records.push_back(picture.record);
    return planDisc(records, title);
}

/// The contents of a patient's files, in the order of the plan.
std::vector<std::size_t> contentsOf(const PlannedPatient& patient) {
    std::vector<std::size_t> result;
    for (const auto& study : patient.studies)
        for (const auto& series : study.series)
            for (const auto& file : series.files) result.push_back(file.content);
    return result;
}

/// Anonymises what was taken in. The order stays as the true names and dates make it.
void anonymise(Intake& intake, const Report& report) {
    const Anonymiser anonymiser;
    std::vector<Intake::Picture> pictures;
    std::size_t patientNumber = 0;
    for (const auto& patient : planOf(intake.pictures, {}).patients) {
        ++patientNumber;
        for (const auto content : contentsOf(patient)) {
            auto& picture = intake.pictures[content];
            if (mayShowNames(picture.copy))
                report("look at " + picture.source.string() + ": names may be burned into its pictures");
            auto fault = anonymiser.rewrite(picture.copy, patientNumber);
            const auto rewritten = openSource(picture.copy);
            if (const auto* skipped = std::get_if<Skipped>(&rewritten); skipped && fault.empty())
                fault = skipped->message;
            if (!fault.empty()) {
                report("left out " + picture.source.string() + ": " + fault);
                ++intake.summary.unshowable;
                fs::remove(picture.copy);
                continue;
            }
            picture.record = recordOf(*std::get<0>(rewritten));
            picture.record.place = pictures.size();
            pictures.push_back(std::move(picture));
        }
    }
    intake.pictures = std::move(pictures);
}

std::uint64_t bytesBelow(const fs::path& path) {
    if (!fs::is_directory(path)) return fs::file_size(path);
    std::uint64_t sum = 0;
    for (const auto& entry : fs::recursive_directory_iterator(path))
        sum += sectorBytes + (entry.is_regular_file() ? entry.file_size() : 0);
    return sum;
}

/// What a disc holds besides its pictures: the programs, the catalogue and what the file system needs.
std::uint64_t fixedBytes(const Enclosures& enclosures) {
    std::uint64_t sum = 1'000'000;
    for (const auto& program : enclosures.programs) sum += bytesBelow(program);
    return sum;
}

std::vector<DiscPlan> plansFor(const DiscRequest& request, const Intake& intake) {
    auto plan = planOf(intake.pictures, request.title);
    if (!request.size) return {std::move(plan)};
    auto fixed = fixedBytes(request.enclosures);
    for (const auto& kept : intake.kept) fixed += bytesBelow(kept);
    if (fixed >= *request.size) throw DiscError("nothing but the viewer would go on a disc of that size");
    return splitPlan(plan, *request.size - fixed, [&](std::size_t number) {
        // A file fills whole sectors and is listed in directories and the catalogue.
        constexpr std::uint64_t listing = 1024;
        const auto sectors = fs::file_size(intake.pictures[number].copy) / sectorBytes + 1;
        return sectors * sectorBytes + listing;
    });
}

/// "disc-2.iso" for the second of several.
fs::path numberedImage(const fs::path& image, std::size_t number) {
    auto name = image.stem();
    name += "-" + std::to_string(number);
    name += image.extension();
    return image.parent_path() / name;
}

}  // namespace

DiscSummary makeDisc(const DiscRequest& request, const Report& report, const Progress& progress) {
    if (request.image) requireImageCanBeWritten(*request.image);
    DiscFolder folder(request.disc);
    const auto collected = collectFiles(request.named, request.disc, folder.work() / "directory", report);
    auto intake = takeIn(collected.files, folder.work(), request.keep, report, progress);
    if (request.anonymise && !intake.pictures.empty()) anonymise(intake, report);

    DiscSummary summary;
    const auto plans = plansFor(request, intake);
    for (std::size_t i = 0; i < plans.size(); ++i) {
        const bool isOne = plans.size() == 1;
        const auto root = isOne ? folder.staging() : folder.staging() / ("Disc" + std::to_string(i + 1));
        fs::create_directories(root);
        const auto write = [&](std::size_t number, const fs::path& target) {
            fs::rename(intake.pictures[number].copy, target);
        };
        writeDisc(root, plans[i], request.enclosures, write, Workers::One,
                  i == 0 ? intake.kept : std::vector<fs::path>());
        if (request.image) {
            const auto image = isOne ? *request.image : numberedImage(*request.image, i + 1);
            requireImageCanBeWritten(image);
            writeDiscImage(root, image, isOne ? "CINEDISC" : "CINEDISC_" + std::to_string(i + 1),
                           folder.work() / "order");
        }
        summary.patients += plans[i].patients.size();
    }
    folder.publish();
    summary.files = intake.pictures.size();
    summary.discs = plans.size();
    summary.missing = collected.missing;
    summary.intake = intake.summary;
    return summary;
}

}  // namespace cinedisc::discmaker
