#include "control/pipeline/CoverPlane.h"

#include <algorithm>

namespace cinedisc {

namespace {

using dicom::Overlay;

bool changesWithFrame(const Overlay& overlay) { return overlay.multiFrame || overlay.embeddedBit >= 0; }

/// Sets the bits of a plane wherever an overlay has a 1, as far as it lies in the image.
void layOverlay(BitPlane& plane, const dicom::PixelFormat& format, const Overlay& overlay,
                const std::vector<std::uint8_t>& bits) {
    if (overlay.rows <= 0 || overlay.columns <= 0) return;
    const auto width = static_cast<std::size_t>(overlay.columns);
    if (bits.size() < width * static_cast<std::size_t>(overlay.rows)) return;
    if (plane.empty()) plane = BitPlane(format.rows, format.columns);
    const int top = overlay.originRow - 1, left = overlay.originColumn - 1;
    const int yFrom = std::max(0, top), yTo = std::min(format.rows, top + overlay.rows);
    const int xFrom = std::max(0, left), xTo = std::min(format.columns, left + overlay.columns);
    for (int y = yFrom; y < yTo; ++y) {
        const std::uint8_t* const source = bits.data() + static_cast<std::size_t>(y - top) * width;
        for (int x = xFrom; x < xTo; ++x)
            if (source[x - left]) plane.set(y, x);
    }
}

}  // namespace

CoverKind coverKind(const dicom::DicomFile& file) {
    if (file.hasShuttersByFrame()) return CoverKind::FrameByFrame;
    if (!file.shutter(0).any() && file.overlays().empty()) return CoverKind::None;
    const auto& overlays = file.overlays();
    return std::any_of(overlays.begin(), overlays.end(), changesWithFrame) ? CoverKind::FrameByFrame
                                                                           : CoverKind::SameOnAllFrames;
}

CoverPlane coverOf(const dicom::DicomFile& file, int frame, const dicom::FrameBytes* bytes) {
    const auto& format = file.pixelFormat();
    const auto shutter = file.shutter(frame);
    // The presentation value is a P-value of 16 bits (PS3.3 C.7.6.11); black when there is none.
    const auto grey = static_cast<std::uint8_t>(shutter.presentationValue.value_or(0) >> 8);

    CoverPlane cover;
    cover.grey = grey;
    cover.hidden = hiddenByShutter(shutter, format.rows, format.columns);
    for (const auto& overlay : file.overlays()) {
        const auto bits =
            bytes ? file.overlayBitsIn(*bytes, overlay, frame) : file.overlayBits(overlay, frame);
        if (bits.empty()) continue;
        const bool isShutter = shutter.bitmapGroup == overlay.group;
        layOverlay(isShutter ? cover.hidden : cover.white, format, overlay, bits);
    }
    return cover;
}

}  // namespace cinedisc
