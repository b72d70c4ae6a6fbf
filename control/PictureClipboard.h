#pragma once

#include <QImage>
#include <QString>

namespace cinedisc {

/// Puts a picture on the clipboard, as a bitmap and as PNG. False, and the clipboard untouched, when it is
/// null.
bool copyPicture(const QImage& picture);
/// Puts plain text on the clipboard.
bool copyText(const QString& text);

}  // namespace cinedisc
