#pragma once

#include "dicom/DataSet.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace cinedisc::dicom {

/// A decimal or whole number of a DS or IS value, nothing when the text is anything else or not finite. A
/// comma stands for the point in files from the field.
std::optional<double> parseNumber(std::string_view text);

/// The numbers of an element, as DataSet::integers and DataSet::decimals answer them: a value that is no
/// number ends the list.
std::vector<std::int64_t> integersOf(const Element& element);
std::vector<double> decimalsOf(const Element& element);

}  // namespace cinedisc::dicom
