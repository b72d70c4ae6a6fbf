#include "dicom/FragmentJoining.h"

#include "dicom/ElementHeader.h"
#include "dicom/Tags.h"

#include <algorithm>

namespace cinedisc::dicom {

Joining joinItems(std::vector<std::byte> bytes, FrameBytes& into) {
    std::size_t at = 0;
    into.begin = itemHeader;
    into.length = 0;
    Joining outcome = Joining::Complete;
    while (outcome == Joining::Complete && at < bytes.size()) {
        const auto header = readElementHeader(std::span(bytes).subspan(at), implicitLittle, itemHeader);
        // A stray byte behind a value of odd length.
        if (!header && bytes.size() - at == 1 && at > 0) break;
        if (header && header->tag == tags::SequenceDelimitation && at > 0) break;
        if (!header || header->tag != tags::Item || header->isOpen()) {
            outcome = Joining::NotItems;
            break;
        }
        at += itemHeader;
        if (header->length > bytes.size() - at) outcome = Joining::CutOff;
        const std::size_t length = std::min<std::size_t>(header->length, bytes.size() - at);
        const std::size_t joinedEnd = into.begin + into.length;
        if (joinedEnd != at)
            std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), length,
                        bytes.begin() + static_cast<std::ptrdiff_t>(joinedEnd));
        into.length += length;
        at += length;
    }
    if (into.length == 0 && outcome == Joining::Complete) outcome = Joining::NotItems;
    into.storage = std::move(bytes);
    if (into.length == 0) into.begin = 0;
    return outcome;
}

}  // namespace cinedisc::dicom
