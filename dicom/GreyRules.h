#pragma once

#include "dicom/DataSet.h"
#include "dicom/PixelFormat.h"
#include "dicom/Presentation.h"

namespace cinedisc::dicom {

/// The grey rules that a header has for a frame, counted from 0.
GreyTransform readGreyTransform(const DataSet& header, const PixelFormat& format, int frame);

/// Whether a header has grey rules for single frames.
bool readsGreyRulesByFrame(const DataSet& header);

}  // namespace cinedisc::dicom
