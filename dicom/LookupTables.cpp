#include "dicom/LookupTables.h"

#include "dicom/Bytes.h"
#include "dicom/Tags.h"
#include "dicom/ValueRepresentation.h"

#include <algorithm>
#include <bit>

namespace cinedisc::dicom {

namespace {

constexpr std::uint32_t mostEntries = 65536;
constexpr int fewestBits = 8, mostBits = 16;

}  // namespace

int plausibleLutBits(int stated, unsigned largest) {
    const int used = std::max(fewestBits, static_cast<int>(std::bit_width(largest)));
    constexpr int unusedThatIsDamage = 3;
    const bool isPlausible = stated >= used && stated <= mostBits && stated - used < unusedThatIsDamage;
    return isPlausible ? stated : used;
}

std::optional<LutDescriptor> readLutDescriptor(const DataSet& header, Tag tag, const LutInput& input) {
    const Element* element = header.find(tag);
    if (!element || element->value.size() < 6) return std::nullopt;
    LutDescriptor descriptor;
    descriptor.entries = load16(element->value.data());
    if (descriptor.entries == 0) descriptor.entries = mostEntries;
    const std::uint16_t first = load16(&element->value[2]);
    constexpr std::uint16_t signBit = 0x8000;
    const bool isStated = element->valueRepresentation == vr("SS");
    const bool isBeyondInput = input.mayBeNegative && first > input.highest;
    const bool isSigned = (first & signBit) && (isStated || isBeyondInput);
    descriptor.firstMapped = isSigned ? static_cast<std::int16_t>(first) : first;
    descriptor.bits = load16(&element->value[4]);
    return descriptor;
}

unsigned largestEntry(const LookupTable& table) {
    return table.entries.empty() ? 0 : *std::max_element(table.entries.begin(), table.entries.end());
}

std::optional<LookupTable> makeLookupTable(const LutDescriptor& descriptor, std::span<const std::byte> data) {
    const std::size_t wanted = descriptor.entries;
    // An odd number of single bytes is padded.
    const bool singleBytes = data.size() < 2 * wanted && data.size() >= wanted && data.size() <= wanted + 1 &&
                             descriptor.bits <= fewestBits;
    const std::size_t there = std::min(wanted, singleBytes ? data.size() : data.size() / 2);
    if (there == 0) return std::nullopt;
    LookupTable table;
    table.firstMapped = descriptor.firstMapped;
    table.entries.reserve(there);
    for (std::size_t i = 0; i < there; ++i)
        table.entries.push_back(singleBytes ? std::to_integer<std::uint16_t>(data[i]) : load16(&data[2 * i]));
    table.bits = singleBytes ? fewestBits : plausibleLutBits(descriptor.bits, largestEntry(table));
    return table;
}

std::optional<LookupTable> readLookupTable(const DataSet& item, const LutInput& input) {
    const auto descriptor = readLutDescriptor(item, tags::LUTDescriptor, input);
    const Element* data = item.find(tags::LUTData);
    if (!descriptor || !data) return std::nullopt;
    return makeLookupTable(*descriptor, data->value);
}

}  // namespace cinedisc::dicom
