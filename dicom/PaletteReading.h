#pragma once

#include "dicom/DataSet.h"
#include "dicom/PixelFormat.h"
#include "dicom/Presentation.h"

#include <optional>

namespace cinedisc::dicom {

/// The palette of a PALETTE COLOR picture, nothing for others or when one of its three tables is missing.
std::optional<Palette> readPalette(const DataSet& header, const PixelFormat& format);

}  // namespace cinedisc::dicom
