#include "fuzzing/window/FileParts.h"

#include "dicom/DicomFile.h"
#include "dicom/MemoryByteSource.h"

#include <algorithm>

namespace cinedisc::fuzzing::window {

namespace {

std::size_t numberAt(Bytes file, std::size_t at) { return std::to_integer<std::size_t>(file[at]); }

/// The header in front of an element's value: letters say how long it is.
FilePart partOf(Bytes file, const dicom::Element& element) {
    const auto value = static_cast<std::size_t>(element.offset);
    const auto lettersAt = [&](std::size_t back) {
        const auto isLetter = [&](std::size_t at) {
            return numberAt(file, at) >= 'A' && numberAt(file, at) <= 'Z';
        };
        return isLetter(value - back) && isLetter(value - back + 1);
    };
    FilePart part{value - 8, value - 4, 4,
                  false,     value,     std::min<std::size_t>(value + element.length, file.size())};
    if (lettersAt(4)) part.lengthAt = value - 2, part.lengthBytes = 2;
    if (lettersAt(8) && numberAt(file, value - 6) == 0) part.begin = value - 12;
    return part;
}

void addElements(Bytes file, const dicom::DataSet& data, std::vector<FilePart>& parts) {
    for (const auto& element : data.elements) {
        if (element.offset < 12 || element.offset > file.size()) continue;
        parts.push_back(partOf(file, element));
        for (const auto& item : element.items) {
            if (item.elements.empty()) continue;
            const auto first = partOf(file, item.elements.front()).begin,
                       last = partOf(file, item.elements.back()).end;
            if (first >= 8) parts.push_back({first - 8, first - 4, 4, false, first, last});
            addElements(file, item, parts);
        }
    }
}

void addFragments(Bytes file, std::size_t at, std::vector<FilePart>& parts) {
    while (at + 8 <= file.size() && numberAt(file, at) == 0xFE && numberAt(file, at + 1) == 0xFF) {
        const auto length = numberAt(file, at + 4) | numberAt(file, at + 5) << 8 |
                            numberAt(file, at + 6) << 16 | numberAt(file, at + 7) << 24;
        const auto end = std::min(at + 8 + length, file.size());
        parts.push_back({at, at + 4, 4, false, at + 8, end});
        at = end;
    }
}

/// Of JPEG, JPEG-LS and JPEG 2000 alike. Bytes of a picture that look like a header do no harm.
void addSegments(Bytes file, std::size_t at, std::vector<FilePart>& parts) {
    for (; at + 4 <= file.size(); ++at) {
        const auto marker = numberAt(file, at + 1),
                   length = numberAt(file, at + 2) << 8 | numberAt(file, at + 3);
        if (numberAt(file, at) != 0xFF || marker < 0x4F || marker == 0xFF || length < 2 ||
            at + 2 + length > file.size())
            continue;
        parts.push_back({at, at + 2, 2, true, at + 4, at + 2 + length});
    }
}

void addTags(Bytes file, std::vector<FilePart>& parts) {
    std::size_t begin = 0;
    for (std::size_t at = 0; at < file.size(); ++at) {
        if (file[at] == std::byte{'<'}) begin = at;
        if (file[at] == std::byte{'>'}) parts.push_back({begin, begin, 0, false, begin + 1, at + 1});
    }
}

}  // namespace

std::vector<FilePart> partsOf(Bytes file) {
    std::vector<FilePart> parts;
    if (!file.empty() && file[0] == std::byte{'<'}) {
        addTags(file, parts);
        return parts;
    }
    const auto opened = dicom::DicomFile::open(
        std::make_shared<dicom::MemoryByteSource>(std::vector(file.begin(), file.end())));
    if (opened) {
        const auto& header = opened.value()->header();
        addElements(file, header, parts);
        if (!header.elements.empty() && header.elements.back().offset < file.size()) {
            addFragments(file, header.elements.back().offset, parts);
            addSegments(file, header.elements.back().offset, parts);
        }
    }
    std::ranges::stable_sort(parts, {}, &FilePart::begin);
    return parts;
}

}  // namespace cinedisc::fuzzing::window
