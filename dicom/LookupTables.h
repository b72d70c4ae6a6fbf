#pragma once

#include "dicom/DataSet.h"
#include "dicom/Presentation.h"

#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom {

/// Which values a look-up table takes, to read the sign of the first one that it maps.
struct LutInput {
    bool mayBeNegative = false;
    std::int64_t highest = 0xFFFF;
};

/// The three numbers of a look-up table descriptor (PS3.3 C.11.1.1.1).
struct LutDescriptor {
    std::uint32_t entries = 0;  ///< 1 to 65536
    std::int64_t firstMapped = 0;
    int bits = 16;
};

/// Reads a descriptor: 0 entries mean 65536; the first value is signed when the representation, or else the
/// input, says so.
std::optional<LutDescriptor> readLutDescriptor(const DataSet& header, Tag tag, const LutInput& input);

/// Bits of the entries, when their highest belies what is stated: 16 where only 8 or 12 are used, which would
/// make the picture black, or 8 where more are used.
int plausibleLutBits(int stated, unsigned largestEntry);
unsigned largestEntry(const LookupTable& table);

/// Entries out of a table's bytes: one byte each when there are only as many, two otherwise. `bits` is
/// corrected where the entries belie it.
std::optional<LookupTable> makeLookupTable(const LutDescriptor& descriptor, std::span<const std::byte> data);

/// The table of an item of a modality or VOI LUT sequence; nothing when it is not complete.
std::optional<LookupTable> readLookupTable(const DataSet& item, const LutInput& input);

}  // namespace cinedisc::dicom
