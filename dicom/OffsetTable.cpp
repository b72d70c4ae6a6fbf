#include "dicom/OffsetTable.h"

#include "dicom/Bytes.h"
#include "dicom/CodeStream.h"
#include "dicom/ElementHeader.h"
#include "dicom/Tags.h"

#include <algorithm>
#include <array>

namespace cinedisc::dicom {

namespace {

bool risesFromZero(const std::vector<std::uint64_t>& offsets) {
    return !offsets.empty() && offsets.front() == 0 &&
           std::adjacent_find(offsets.begin(), offsets.end(), std::greater_equal<>()) == offsets.end();
}

std::vector<std::uint64_t> numbersIn(std::span<const std::byte> bytes, int size) {
    std::vector<std::uint64_t> numbers;
    const auto unit = static_cast<std::size_t>(size);
    numbers.reserve(bytes.size() / unit);
    for (std::size_t at = 0; at + unit <= bytes.size(); at += unit)
        numbers.push_back(loadNumber(&bytes[at], size));
    return numbers;
}

}  // namespace

OffsetTable readOffsetTable(const ByteSource& source, std::uint64_t offset, const DataSet& header) {
    OffsetTable table;
    table.firstItem = offset;
    std::array<std::byte, itemHeader + codeStreamSignatureBytes> start{};
    const std::span<const std::byte> read(start.data(), source.readAt(offset, start));
    const auto item = readElementHeader(read, implicitLittle, read.size());
    if (!item || item->tag != tags::Item) return table;
    const std::uint64_t room = source.size() - std::min(source.size(), offset + itemHeader);
    const auto content =
        read.subspan(itemHeader, std::min<std::size_t>(item->length, read.size() - itemHeader));
    if (beginsCodeStream(content, Compression::None)) return table;

    table.firstItem = offset + itemHeader + std::min<std::uint64_t>(item->length, room);
    if (item->length > 0 && item->length <= std::min(room, mostOffsetTableBytes)) {
        std::vector<std::byte> bytes(item->length);
        bytes.resize(source.readAt(offset + itemHeader, bytes));
        table.offsets = numbersIn(bytes, 4);
    }
    if (!risesFromZero(table.offsets)) {
        table.offsets.clear();
        if (const Element* extended = header.find(tags::ExtendedOffsetTable))
            table.offsets = numbersIn(extended->value, 8);
        if (!risesFromZero(table.offsets)) table.offsets.clear();
    }
    return table;
}

}  // namespace cinedisc::dicom
