#pragma once

#include "dicom/DicomFile.h"

#include <QString>
#include <QStringList>

namespace cinedisc {

/// What a file says about itself in the corners of the main view: whose picture it is, and which.
struct HeaderFacts {
    QStringList patient;  ///< name, one line a component group; ID; birth date
    QStringList study;    ///< date and time of day, series, run or image, projection
    QString warning;      ///< of a file that is a program as well, "" for others
    QString lossy;        ///< how much was given up in compression, "" when nothing

    static HeaderFacts of(const dicom::DicomFile& file);
    /// What tells a preview from the others: run or image, projection, number of frames.
    static QStringList brief(const dicom::DicomFile& file, int frames);
};

}  // namespace cinedisc
