#pragma once

#include <QIODevice>
#include <QImage>

namespace cinedisc {

/// Writes a picture as a baseline JPEG that keeps every pixel's own colour. False when it is larger than a
/// JPEG can be, or the device does not take it.
bool encodeJpeg(const QImage& picture, QIODevice& into);

}  // namespace cinedisc
