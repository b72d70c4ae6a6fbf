#pragma once

#include "control/pipeline/GreyRule.h"
#include "dicom/PixelFormat.h"

#include <array>
#include <cstdint>
#include <vector>

namespace cinedisc {

/// A grey rule worked out for every stored value of at most 16 bits. Indexed by the sample's bits read as
/// unsigned, so that signed samples need no offset, and complete for the sample's type, so that no sample can
/// index outside.
class GreyTable {
  public:
    GreyTable() = default;
    /// `wideSamples`: the frame holds 16-bit samples, otherwise 8-bit ones.
    GreyTable(const GreyRule& rule, const dicom::PixelFormat& format, bool wideSamples);

    const std::uint8_t* entries() const { return entries_.data(); }

  private:
    std::vector<std::uint8_t> entries_;
};

}  // namespace cinedisc
