#pragma once

#include "control/pipeline/BitPlane.h"
#include "dicom/DicomFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace cinedisc {

/// What lies over the pixels of a frame: what shutters hide, in one grey, and on it overlays in white. Holds
/// two bits for a pixel at most.
struct CoverPlane {
    BitPlane hidden;        ///< by shutters; empty for nothing
    BitPlane white;         ///< of overlays; empty for none
    std::uint8_t grey = 0;  ///< of what is hidden

    /// The most that the cover of a frame takes.
    static std::size_t mostBytes(int rows, int columns) { return 2 * BitPlane::byteSize(rows, columns); }
    bool empty() const { return hidden.empty() && white.empty(); }
    std::size_t byteSize() const { return hidden.byteSize() + white.byteSize(); }
    /// Covers displayed values of the columns [from, to) of row y.
    void apply(int y, int from, int to, std::uint8_t* values) const {
        if (!hidden.empty()) hidden.paint(y, from, to, grey, values);
        if (!white.empty()) white.paint(y, from, to, 0xFF, values);
    }
};

/// Whether anything lies over the pixels of a file, and whether it is the same on all its frames.
enum class CoverKind { None, SameOnAllFrames, FrameByFrame };
CoverKind coverKind(const dicom::DicomFile& file);

/// The cover of one frame, counted from 0; empty when nothing lies over it. Overlays are white and lie on the
/// shutter. `bytes`: that frame as it was read, so that overlays in its pixel cells need not be read again.
CoverPlane coverOf(const dicom::DicomFile& file, int frame, const dicom::FrameBytes* bytes = nullptr);

/// What the shutter's shapes hide. Empty when no shape can be used: a shape without an area, or shapes that
/// together hide everything, are faults of the file and cover nothing.
BitPlane hiddenByShutter(const dicom::Shutter& shutter, int rows, int columns);

}  // namespace cinedisc
