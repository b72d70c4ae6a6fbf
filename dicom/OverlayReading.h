#pragma once

#include "dicom/ByteSource.h"
#include "dicom/Bytes.h"
#include "dicom/DataSet.h"
#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Presentation.h"

#include <cstdint>
#include <vector>

namespace cinedisc::dicom {

/// The overlay planes of a header (PS3.3 C.9.2), groups 6000 to 601E. Bits that the header holds are
/// unpacked; large multi-frame overlays are left in the file.
std::vector<Overlay> readOverlays(const DataSet& header, const PixelFormat& format);

/// Index of the overlay's own frame that goes with an image frame counted from 0, -1 when none does.
int overlayFrameFor(const Overlay& overlay, int imageFrame);

/// One frame of an overlay that was left in the file; empty when the file does not hold it.
std::vector<std::uint8_t> readOverlayFrame(const ByteSource& body, const DataSet& header, ByteOrder order,
                                           const Overlay& overlay, int overlayFrame);

/// The bits of an overlay that lies in the unused bits of the pixel cells, out of a frame of whole cells.
std::vector<std::uint8_t> embeddedBits(const Frame& cells, const Overlay& overlay);

}  // namespace cinedisc::dicom
