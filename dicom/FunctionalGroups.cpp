#include "dicom/FunctionalGroups.h"

#include "dicom/Tags.h"

namespace cinedisc::dicom {

const DataSet* functionalGroup(const DataSet& header, Tag macro, int frame) {
    const auto firstItem = [macro](const DataSet& groups) -> const DataSet* {
        const auto& items = groups.items(macro);
        return items.empty() ? nullptr : &items.front();
    };
    const auto& perFrame = header.items(tags::PerFrameFunctionalGroups);
    if (frame >= 0 && static_cast<std::size_t>(frame) < perFrame.size())
        if (const DataSet* own = firstItem(perFrame[static_cast<std::size_t>(frame)])) return own;
    const auto& shared = header.items(tags::SharedFunctionalGroups);
    return shared.empty() ? nullptr : firstItem(shared.front());
}

const DataSet& groupOrHeader(const DataSet& header, Tag macro, int frame) {
    const DataSet* group = functionalGroup(header, macro, frame);
    return group ? *group : header;
}

}  // namespace cinedisc::dicom
