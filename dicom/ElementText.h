#pragma once

#include "dicom/CharacterSet.h"
#include "dicom/DataSet.h"
#include "dicom/LongValues.h"

#include <string>

namespace cinedisc::dicom {

/// An element's value as UTF-8: text decoded and without its padding, numbers between backslashes, nothing
/// for others.
std::string elementText(const Element& element, const CharacterSet& characterSet);

/// An element's value on one line of a described header; binary values byte by byte. `kind` is what the value
/// is to be read as.
std::string describeValue(const Element& element, Vr kind, const CharacterSet& characterSet,
                          LongValues longValues);

}  // namespace cinedisc::dicom
