#include "discmaker/DemoDisc.h"

#include "discmaker/DemoFile.h"
#include "discmaker/DiscPlanner.h"

#include <vector>

namespace cinedisc::discmaker {

void makeDemoDisc(const std::filesystem::path& disc, const std::string& title, const Enclosures& enclosures,
                  DemoSize size) {
    DiscFolder folder(disc);
    const auto images = demoImages(size);
    std::vector<ImageRecord> records;
    for (const auto& image : images) records.push_back(demoRecord(image));
    writeDisc(
        folder, planDisc(records, title, PatientOrder::AsGiven), enclosures,
        [&images](std::size_t number, const std::filesystem::path& target) {
            writeDemoFile(images[number], target);
        },
        Workers::AllProcessors);
}

}  // namespace cinedisc::discmaker
