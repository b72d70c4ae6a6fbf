#pragma once

#include "dicom/DataSet.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace cinedisc::dicom {

/// A decimal or whole number of a DS or IS value, nothing when the text is anything else or not finite. A
/// comma stands for the point in files from the field.
std::optional<double> parseNumber(std::string_view text);

/// The numbers in a value of a representation, as DataSet::integers and DataSet::decimals return them: a text
/// that is no number ends the list.
std::vector<std::int64_t> integersIn(std::span<const std::byte> value, Vr kind);
std::vector<double> decimalsIn(std::span<const std::byte> value, Vr kind);

/// Whether values are whole numbers in binary.
bool isWholeNumberVr(Vr kind);
/// Whether values are floating-point numbers in binary.
bool isRealVr(Vr kind);

}  // namespace cinedisc::dicom
