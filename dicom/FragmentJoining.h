#pragma once

#include "dicom/FrameSource.h"

#include <cstddef>
#include <vector>

namespace cinedisc::dicom {

/// What joinItems found.
enum class Joining {
    Complete,  ///< items up to the end of the bytes, or to a delimiter
    CutOff,    ///< the last item goes on beyond the bytes
    NotItems   ///< something else than an item
};

/// Takes the item headers out of bytes that begin with one, so that the values of the items follow each
/// other.
Joining joinItems(std::vector<std::byte> bytes, FrameBytes& into);

}  // namespace cinedisc::dicom
