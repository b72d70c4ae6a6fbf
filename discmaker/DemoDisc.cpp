#include "discmaker/DemoDisc.h"

#include "discmaker/DemoFile.h"
#include "discmaker/DiscFolder.h"
#include "discmaker/DiscImage.h"
#include "discmaker/DiscPlanner.h"

#include <vector>

namespace cinedisc::discmaker {

void makeDemoDisc(const DiscRequest& request, DemoSize size) {
    if (request.image) requireImageCanBeWritten(*request.image);
    DiscFolder folder(request.disc);
    const auto images = demoImages(size);
    std::vector<ImageRecord> records;
    for (const auto& image : images) {
        records.push_back(demoRecord(image));
        records.back().place = records.size();
    }
    writeDisc(
        folder.staging(), planDisc(records, request.title), request.enclosures,
        [&images](std::size_t number, const std::filesystem::path& target) {
            writeDemoFile(images[number], target);
        },
        Workers::AllProcessors);
    if (request.image)
        writeDiscImage(folder.staging(), *request.image, "CINEDISC_DEMO", folder.work() / "order");
    folder.publish();
}

}  // namespace cinedisc::discmaker
