#pragma once

#include "dicom/DicomFile.h"

#include <QString>

namespace cinedisc {

/// When a picture or run was recorded, as far as its file says. "" for what is not known.
struct RecordingTime {
    QString date;  ///< as readableDate
    QString time;  ///< as readableTime

    /// The nearest to the picture itself that has a time of day: acquisition, content, series, study (PS3.3
    /// C.7.6.1, C.7.3.1, C.7.2.1).
    static RecordingTime of(const dicom::DicomFile& file);
};

/// Frames a second of a run (PS3.3 C.7.6.5); 0 when its file does not say.
double recordedFrameRate(const dicom::DicomFile& file);

}  // namespace cinedisc
