#pragma once

#include "dicom/DataSet.h"
#include "dicom/PixelFormat.h"
#include "dicom/Presentation.h"

namespace cinedisc::dicom {

/// Shape of a pixel from its aspect ratio (PS3.3 C.7.6.3.1.7) or, without one, from the spacing at the
/// detector or in the patient. 1 when the header says nothing sensible, or when the picture would not even
/// become a pixel wider.
PixelAspect readPixelAspect(const DataSet& header, const PixelFormat& format);

}  // namespace cinedisc::dicom
