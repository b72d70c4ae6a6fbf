#pragma once

#include "tests/fidelity/ReferenceFile.h"

#include <QImage>

namespace cinedisc::fidelity {

/// The displayed picture of a frame, counted from 0, computed pixel by pixel with the standard's formulas;
/// null when the frame cannot be decoded.
QImage plainPicture(ReferenceFile& file, int frame);
/// The same as DCMTK's own rendering shows it with the window that the file asks for; without one, over the
/// full stored range for 8 bits and the values of the frame otherwise. Null when DCMTK cannot render it.
QImage dcmtkPicture(ReferenceFile& file, int frame);

}  // namespace cinedisc::fidelity
