#pragma once

#include "dicom/DataSet.h"

namespace cinedisc::dicom {

/// The item of a functional group macro for a frame counted from 0, from the per-frame groups or else the
/// shared ones (PS3.3 C.7.6.16); null for files without functional groups.
const DataSet* functionalGroup(const DataSet& header, Tag macro, int frame);

/// The same, and the data set itself where there is no such group: attributes stand there in classic objects.
const DataSet& groupOrHeader(const DataSet& header, Tag macro, int frame);

}  // namespace cinedisc::dicom
