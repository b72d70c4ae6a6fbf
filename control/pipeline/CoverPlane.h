#pragma once

#include "dicom/DicomFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace cinedisc {

/// What lies over the pixels of a frame: shutters and overlay planes, as two bytes a pixel. A displayed value
/// v becomes (v & keep) | paint, which needs no branch.
struct CoverPlane {
    static constexpr std::size_t bytesPerPixel = 2;

    int columns = 0;
    std::vector<std::uint8_t> keep;
    std::vector<std::uint8_t> paint;

    bool empty() const { return keep.empty(); }
    const std::uint8_t* keepRow(int y) const { return keep.data() + offset(y); }
    const std::uint8_t* paintRow(int y) const { return paint.data() + offset(y); }

  private:
    std::size_t offset(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(columns);
    }
};

/// Whether anything lies over the pixels of a file, and whether it is the same on all its frames.
enum class CoverKind { None, SameOnAllFrames, FrameByFrame };
CoverKind coverKind(const dicom::DicomFile& file);

/// The cover of one frame, counted from 0; empty when nothing lies over it. Overlays are white and lie on the
/// shutter. `bytes`: that frame as it was read, so that overlays in its pixel cells need not be read again.
CoverPlane coverOf(const dicom::DicomFile& file, int frame, const dicom::FrameBytes* bytes = nullptr);

/// One byte a pixel, 1 where the shutter's shapes leave the picture visible. Empty when no shape can be used:
/// a shape without an area, or shapes that together hide everything, are faults of the file and cover
/// nothing.
std::vector<std::uint8_t> visibleThroughShutter(const dicom::Shutter& shutter, int rows, int columns);

}  // namespace cinedisc
