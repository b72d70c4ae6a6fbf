#include "control/picture/DisplayedPicture.h"

#include <QPainter>

namespace cinedisc {

QImage displayedPicture(ViewState& view) {
    view.picture.await();
    QImage picture = view.renderer.wholePicture();
    const int frame = view.picture.currentFrame();
    if (picture.isNull() || !view.labels.any(frame)) return picture;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::TextAntialiasing);
    view.labels.paint(painter, frame, picture.rect());
    return picture;
}

}  // namespace cinedisc
