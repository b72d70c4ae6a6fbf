#include "control/PictureClipboard.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace cinedisc {

bool copyPicture(const QImage& picture) {
    if (picture.isNull()) return false;
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG")) return false;
    auto* data = new QMimeData;
    data->setImageData(picture);
    data->setData("image/png", png);
    QGuiApplication::clipboard()->setMimeData(data);
    return true;
}

bool copyText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    return true;
}

}  // namespace cinedisc
