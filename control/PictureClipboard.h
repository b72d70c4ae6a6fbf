#pragma once

#include <QImage>
#include <QString>

namespace cinedisc {

/// Puts a picture on the clipboard: without loss as PNG and BMP, and as the JPEG that an export writes.
/// False, and the clipboard untouched, when it is null. Returns before the picture is compressed.
bool copyPicture(const QImage& picture);
/// Puts plain text on the clipboard.
bool copyText(const QString& text);

}  // namespace cinedisc
