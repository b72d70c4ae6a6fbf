#pragma once

#include "control/pipeline/GreyRule.h"
#include "dicom/PixelFormat.h"
#include "dicom/Presentation.h"

#include <array>
#include <cstdint>

namespace cinedisc {

/// The tables of a PALETTE COLOR picture, worked out for every stored value as 8-bit red, green and blue.
class PaletteTable {
  public:
    PaletteTable(const dicom::Palette& palette, const dicom::PixelFormat& format, bool wideSamples);

    /// 0 red, 1 green, 2 blue; indexed like GreyTable.
    const std::uint8_t* entries(int channel) const {
        return channels_[static_cast<std::size_t>(channel)].data();
    }

  private:
    std::array<std::vector<std::uint8_t>, 3> channels_;
};

}  // namespace cinedisc
