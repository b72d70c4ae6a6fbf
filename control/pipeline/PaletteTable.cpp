#include "control/pipeline/PaletteTable.h"

#include "control/pipeline/ValueRange.h"

#include <algorithm>
#include <bit>

namespace cinedisc {

namespace {

// Bits that an entry has more than a displayed colour. Some writers announce 16-bit entries and fill them
// with 8-bit colours.
int surplusBits(const dicom::Palette& palette) {
    std::uint32_t brightest = 255;
    std::uint16_t largest = 0;
    for (const auto* table : {&palette.red, &palette.green, &palette.blue}) {
        brightest = std::max(brightest, fullScale(*table));
        for (const std::uint16_t entry : table->entries) largest = std::max(largest, entry);
    }
    return largest < 256 ? 0 : std::bit_width(brightest) - 8;
}

}  // namespace

PaletteTable::PaletteTable(const dicom::Palette& palette, const dicom::PixelFormat& format,
                           bool wideSamples) {
    const int surplus = surplusBits(palette);
    const std::array<const dicom::LookupTable*, 3> tables{&palette.red, &palette.green, &palette.blue};
    const int count = wideSamples ? 65536 : 256;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        channels_[channel].resize(static_cast<std::size_t>(count));
        for (int index = 0; index < count; ++index) {
            const int value = format.isSigned && index >= count / 2 ? index - count : index;
            channels_[channel][static_cast<std::size_t>(index)] =
                static_cast<std::uint8_t>(lookUp(*tables[channel], value) >> surplus);
        }
    }
}

}  // namespace cinedisc
