#pragma once

#include "control/pipeline/GreyRule.h"
#include "control/pipeline/LinearRule.h"
#include "dicom/PixelFormat.h"

#include <cstdint>
#include <optional>
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
    /// A straight line that gives the same greys for all values that the stored bits can express, when there
    /// is one: working it out is faster than looking it up.
    const std::optional<LinearRule>& linear() const { return linear_; }

  private:
    std::optional<LinearRule> lineThrough(const GreyRule& rule, int from, int to) const;
    bool isLine(const LinearRule& line, int from, int to) const;

    std::vector<std::uint8_t> entries_;
    std::optional<LinearRule> linear_;
};

}  // namespace cinedisc
