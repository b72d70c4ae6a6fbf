#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace cinedisc::discmaker {

/// What the disc's order and catalogue take from one DICOM file. Texts are UTF-8 as they stand in the header;
/// "" and nothing stand for what is missing.
struct ImageRecord {
    std::string patientName, patientId;
    std::string studyUid, studyDate, studyTime, studyId, studyDescription;
    std::string seriesUid, seriesDescription, modality;
    std::optional<std::int64_t> seriesNumber;
    std::optional<std::int64_t> instanceNumber;
    int frames = 0;  ///< 0 for an object without picture
    /// Positioner angles in degrees (PS3.3 C.8.7.5.1.2), of X-ray angiography only.
    std::optional<double> primaryAngle, secondaryAngle;
};

}  // namespace cinedisc::discmaker
