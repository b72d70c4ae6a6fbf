#include "control/PictureClipboard.h"

#include "control/PictureMimeData.h"

#include <QClipboard>
#include <QGuiApplication>

namespace cinedisc {

bool copyPicture(const QImage& picture) {
    if (picture.isNull()) return false;
    QGuiApplication::clipboard()->setMimeData(new PictureMimeData(picture));
    return true;
}

bool copyText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    return true;
}

}  // namespace cinedisc
