#pragma once

#include "control/PictureEncoding.h"

#include <QString>

namespace cinedisc {

/// The format that a name's extension asks for, in any case, or `otherwise` when it asks for none that is
/// known.
PictureFormat formatFor(const QString& path, PictureFormat otherwise);

/// Writes a picture to a path, unchanged. The file appears whole or not at all; what was there before stays
/// then. A failure raises run-time error 76 when the folder does not exist, 75 otherwise.
void exportPicture(const QImage& picture, const QString& path, PictureFormat format);

}  // namespace cinedisc
