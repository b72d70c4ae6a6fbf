#pragma once

#include <QIODevice>
#include <QImage>

namespace cinedisc {

enum class PictureFormat { Jpeg, Bmp, Png };

/// Writes a picture, 8-bit grey or 32-bit colour, as a file of a format: without loss, but for JPEG, which
/// keeps every pixel's own colour. False when the format cannot hold it or the device does not take it.
bool encode(const QImage& picture, PictureFormat format, QIODevice& into);

}  // namespace cinedisc
