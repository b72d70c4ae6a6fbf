#pragma once

#include <compare>
#include <cstdint>

namespace cinedisc::dicom {

/// A data element's tag (PS3.5 section 7.1).
struct Tag {
    std::uint16_t group = 0;
    std::uint16_t element = 0;

    friend constexpr auto operator<=>(const Tag&, const Tag&) = default;
};

}  // namespace cinedisc::dicom
