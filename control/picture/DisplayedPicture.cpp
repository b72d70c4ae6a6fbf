#include "control/picture/DisplayedPicture.h"

#include <QPainter>

#include <utility>

namespace cinedisc {

QImage displayedPicture(ViewState& view) {
    view.picture.await();
    QImage picture = view.renderer.wholePicture();
    const int frame = view.picture.currentFrame();
    if (picture.isNull() || !view.labels.any(frame)) return picture;
    const auto format = picture.format();
    QImage labelled = std::move(picture).convertToFormat(QImage::Format_RGB32);
    QPainter painter(&labelled);
    painter.setRenderHint(QPainter::TextAntialiasing);
    view.labels.paint(painter, frame, labelled.rect());
    painter.end();
    return std::move(labelled).convertToFormat(format);
}

}  // namespace cinedisc
