#pragma once

#include "dicom/DataSet.h"
#include "dicom/Presentation.h"

namespace cinedisc::dicom {

/// The display shutter of a frame: that of the data set, or the frame's own in enhanced objects. Shapes
/// that lack a number are left out.
Shutter readShutter(const DataSet& header, int frame);
/// Whether single frames bring shutters of their own.
bool readsShuttersByFrame(const DataSet& header);

}  // namespace cinedisc::dicom
