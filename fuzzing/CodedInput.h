#pragma once

#include "dicom/PixelFormat.h"
#include "fuzzing/Targets.h"

#include <optional>
#include <vector>

namespace cinedisc::fuzzing {

/// One frame's bytes and what else its decoder is told.
struct CodedInput {
    dicom::PixelFormat format;
    bool bigEndian = false, wholeCells = false;
    int firstBit = 0;
    Bytes stream;

    /// Empty when the input is too short, or asks for a picture so large that drawing the line between much
    /// and too much would take all the time.
    static std::optional<CodedInput> of(Bytes input);
    std::vector<std::byte> written() const;
};

}  // namespace cinedisc::fuzzing
