#include "platform/widgets/PictureEngine.h"

#include "platform/widgets/PicturePath.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

namespace cinedisc {

namespace {

constexpr qreal grid = 24;
constexpr qreal penWidth = 1.7;

QColor colorFor(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Disabled) return palette.color(QPalette::Disabled, QPalette::ButtonText);
    return palette.color(mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText);
}

}  // namespace

void PictureEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) {
    const QColor color = colorFor(mode);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QRectF(rect).center());
    const qreal scale = qMin(rect.width(), rect.height()) / grid;
    painter->scale(drawing_.side == Side::Mirrored ? -scale : scale, scale);
    painter->translate(-grid / 2, -grid / 2);
    painter->fillPath(picturePath(drawing_.filled), color);
    painter->strokePath(picturePath(drawing_.outlined),
                        QPen(color, penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->restore();
}

QPixmap PictureEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, picture.rect(), mode, state);
    return picture;
}

QIcon pictureIcon(Picture picture) { return QIcon(new PictureEngine(pictureDrawing(picture))); }

}  // namespace cinedisc
