#include "control/pipeline/CoverPlane.h"

#include <algorithm>

namespace cinedisc {

namespace {

using dicom::Overlay;

bool changesWithFrame(const Overlay& overlay) { return overlay.multiFrame || overlay.embeddedBit >= 0; }

void prepare(CoverPlane& cover, const dicom::PixelFormat& format) {
    if (!cover.empty()) return;
    const auto size = static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns);
    cover.columns = format.columns;
    cover.keep.assign(size, 0xFF);
    cover.paint.assign(size, 0);
}

/// Paints `grey` wherever an overlay has a 1, as far as it lies in the image.
void paintOverlay(CoverPlane& cover, const dicom::PixelFormat& format, const Overlay& overlay,
                  const std::vector<std::uint8_t>& bits, std::uint8_t grey) {
    if (overlay.rows <= 0 || overlay.columns <= 0) return;
    const auto width = static_cast<std::size_t>(overlay.columns);
    if (bits.size() < width * static_cast<std::size_t>(overlay.rows)) return;
    const std::int64_t top = overlay.originRow - 1, left = overlay.originColumn - 1;
    const std::int64_t yFrom = std::max<std::int64_t>(0, top),
                       yTo = std::min<std::int64_t>(format.rows, top + overlay.rows);
    const std::int64_t xFrom = std::max<std::int64_t>(0, left),
                       xTo = std::min<std::int64_t>(format.columns, left + overlay.columns);
    for (std::int64_t y = yFrom; y < yTo; ++y) {
        const std::uint8_t* source = bits.data() + static_cast<std::size_t>(y - top) * width;
        const auto row = static_cast<std::size_t>(y) * static_cast<std::size_t>(format.columns);
        for (std::int64_t x = xFrom; x < xTo; ++x) {
            if (!source[x - left]) continue;
            cover.keep[row + static_cast<std::size_t>(x)] = 0;
            cover.paint[row + static_cast<std::size_t>(x)] = grey;
        }
    }
}

void paintShutter(CoverPlane& cover, const dicom::PixelFormat& format, const dicom::Shutter& shutter,
                  std::uint8_t grey) {
    const auto visible = visibleThroughShutter(shutter, format.rows, format.columns);
    if (visible.empty()) return;
    prepare(cover, format);
    for (std::size_t i = 0; i < visible.size(); ++i) {
        cover.keep[i] = visible[i] ? 0xFF : 0;
        cover.paint[i] = visible[i] ? 0 : grey;
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
    paintShutter(cover, format, shutter, grey);
    for (const bool covering : {true, false}) {  // the bitmap shutter first: overlays lie on it
        for (const auto& overlay : file.overlays()) {
            if ((shutter.bitmapGroup == overlay.group) != covering) continue;
            const auto bits =
                bytes ? file.overlayBitsIn(*bytes, overlay, frame) : file.overlayBits(overlay, frame);
            if (bits.empty()) continue;
            prepare(cover, format);
            paintOverlay(cover, format, overlay, bits, covering ? grey : 0xFF);
        }
    }
    return cover;
}

}  // namespace cinedisc
