#pragma once

#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Presentation.h"

namespace cinedisc {

/// Lowest and highest of some values, both included.
struct ValueRange {
    double low = 0;
    double high = 0;

    double span() const { return high - low; }
    friend bool operator==(const ValueRange&, const ValueRange&) = default;
};

/// Range of a frame's stored values. Padding, infinities and NaN do not count; without
/// any value that counts the range is 0 ... 0.
ValueRange frameRange(const dicom::Frame& frame,
                      const std::optional<std::pair<std::int64_t, std::int64_t>>& padding);

/// All values that the stored bits can express; 0 ... 1 for floating point pixels.
ValueRange expressibleRange(const dicom::PixelFormat& format);

/// The range that stored values span behind the modality step.
ValueRange modalityRange(const dicom::GreyTransform& grey, const ValueRange& stored);

/// One stored value behind the modality step (PS3.3 C.11.1): through the table, or slope and intercept.
double modalityValue(const dicom::GreyTransform& grey, double stored);

/// The entry of a table for a value; 0 for an empty table.
std::uint16_t lookUp(const dicom::LookupTable& table, double value);

/// The highest number that a table's entries are to be read against. Files announce fewer bits than they use.
std::uint32_t fullScale(const dicom::LookupTable& table);

}  // namespace cinedisc
