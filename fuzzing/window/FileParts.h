#pragma once

#include "fuzzing/Targets.h"

#include <vector>

namespace cinedisc::fuzzing::window {

/// A part of a file with a header of its own: an element, an item, a fragment, a segment of a code stream, a
/// tag of XML.
struct FilePart {
    std::size_t begin = 0;
    std::size_t lengthAt = 0;
    std::size_t lengthBytes = 0;  ///< 0 for parts that state no length
    bool isBigEndian = false;
    std::size_t value = 0, end = 0;
};

/// All parts of a DICOM file or a catalogue, in the order in which they begin; parts lie within parts.
std::vector<FilePart> partsOf(Bytes file);

}  // namespace cinedisc::fuzzing::window
