#pragma once

#include "dicom/CharacterSet.h"
#include "dicom/DataSet.h"

#include <string>

namespace cinedisc::dicom {

/// An element's value as UTF-8: text decoded and without its padding, numbers between backslashes, nothing
/// for others.
std::string elementText(const Element& element, const CharacterSet& characterSet);

/// An element's value for a line of the header page: one line, shortened, binary values as their first bytes.
/// `kind` is what the value is to be read as.
std::string describeValue(const Element& element, Vr kind, const CharacterSet& characterSet);

}  // namespace cinedisc::dicom
