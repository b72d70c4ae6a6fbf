#include "dicom/PaletteReading.h"

#include "dicom/LookupTables.h"
#include "dicom/SegmentedPalette.h"
#include "dicom/Tags.h"

#include <algorithm>
#include <array>

namespace cinedisc::dicom {

namespace {

std::optional<LookupTable> readSegmented(const LutDescriptor& descriptor, const Element& data) {
    const bool isPlainlyTwoBytes = descriptor.bits > 8;
    LookupTable table;
    table.firstMapped = descriptor.firstMapped;
    table.entries = expandSegments(data.value, isPlainlyTwoBytes ? 2 : 1, descriptor.entries);
    // Tables of 8 bits are written with words of 16 as well: they break off early when read as bytes.
    if (!isPlainlyTwoBytes) {
        auto fromWords = expandSegments(data.value, 2, descriptor.entries);
        if (fromWords.size() > table.entries.size()) table.entries = std::move(fromWords);
    }
    if (table.entries.empty()) return std::nullopt;
    table.bits = descriptor.bits;
    return table;
}

}  // namespace

std::optional<Palette> readPalette(const DataSet& header, const PixelFormat& format) {
    if (format.photometric != Photometric::PaletteColor) return std::nullopt;
    const LutInput input{format.isSigned, (std::int64_t{1} << std::min(format.bitsStored - 1, 32)) - 1};
    std::array<LookupTable, 3> tables;
    int bits = 0;
    unsigned highest = 0;
    for (std::size_t colour = 0; colour < tables.size(); ++colour) {
        const auto descriptor =
            readLutDescriptor(header, tags::forColour(tags::RedPaletteDescriptor, colour), input);
        const Element* plain = header.find(tags::forColour(tags::RedPaletteData, colour));
        const Element* segmented = header.find(tags::forColour(tags::SegmentedRedPaletteData, colour));
        if (!descriptor || !(plain || segmented)) return std::nullopt;
        auto table = plain && !plain->value.empty() ? makeLookupTable(*descriptor, plain->value)
                     : segmented                    ? readSegmented(*descriptor, *segmented)
                                                    : std::nullopt;
        if (!table) return std::nullopt;
        tables[colour] = std::move(*table);
        bits = std::max(bits, descriptor->bits);
        highest = std::max(highest, largestEntry(tables[colour]));
    }
    // A colour that is hardly used must not be taken for one of fewer bits than the others.
    for (LookupTable& table : tables) table.bits = plausibleLutBits(bits, highest);
    return Palette{std::move(tables[0]), std::move(tables[1]), std::move(tables[2])};
}

}  // namespace cinedisc::dicom
