#pragma once

namespace cinedisc::dicom {

/// What becomes of values that make a very long line when they are described.
enum class LongValues { Cut, Whole };

}  // namespace cinedisc::dicom
