#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace cinedisc::discmaker {

/// What the disc's order and catalogue take from one DICOM file. Texts are UTF-8 as they stand in the header;
/// "" and nothing stand for what is missing.
struct ImageRecord {
    std::string patientName, patientId, birthDate;
    std::string studyUid, studyDate, studyTime, studyId, studyDescription;
    std::string seriesUid, seriesDescription, modality;
    std::string instanceUid;
    /// Date and time of acquisition, digits that sort as the times do; of the content where that is missing.
    std::string acquired;
    std::optional<std::int64_t> seriesNumber;
    std::optional<std::int64_t> instanceNumber;
    /// Position in an order that was given, such as that of a DICOMDIR.
    std::optional<std::size_t> place;
    int frames = 0;  ///< that can be shown
    /// Positioner angles in degrees (PS3.3 C.8.7.5.1.2), of X-ray angiography only.
    std::optional<double> primaryAngle, secondaryAngle;
};

}  // namespace cinedisc::discmaker
