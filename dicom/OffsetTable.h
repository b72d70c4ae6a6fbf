#pragma once

#include "dicom/ByteSource.h"
#include "dicom/DataSet.h"

#include <cstdint>
#include <vector>

namespace cinedisc::dicom {

/// Larger offset tables are taken for damage.
constexpr std::uint64_t mostOffsetTableBytes = 16 << 20;

/// Where the fragments of encapsulated pixel data begin, and what the file says about their frames (PS3.5
/// annex A.4).
struct OffsetTable {
    std::uint64_t firstItem = 0;  ///< place of the first fragment's item, bytes in the file
    std::vector<std::uint64_t>
        offsets;  ///< of each frame's first item from there; empty when not told or senseless
};

/// Reads the basic offset table at `offset`, or takes the extended one from the header (7FE0,0001). Offsets
/// that do not start at 0 and rise are dropped. A value that begins with a fragment right away has no table.
OffsetTable readOffsetTable(const ByteSource& source, std::uint64_t offset, const DataSet& header);

}  // namespace cinedisc::dicom
