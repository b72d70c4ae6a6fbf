#pragma once

#include "dicom/DataSet.h"
#include "dicom/Presentation.h"

namespace cinedisc::dicom {

/// The display shutter of a header: that of the data set, or the first frame's in enhanced objects. Shapes
/// that lack a number are left out.
Shutter readShutter(const DataSet& header);

}  // namespace cinedisc::dicom
