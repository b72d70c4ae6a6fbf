#include "platform/widgets/IconEngine.h"

#include "platform/widgets/IconPath.h"

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

void IconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) {
    const QColor color = colorFor(mode);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QRectF(rect).center());
    const qreal scale = qMin(rect.width(), rect.height()) / grid;
    painter->scale(drawing_.side == Side::Mirrored ? -scale : scale, scale);
    painter->translate(-grid / 2, -grid / 2);
    painter->fillPath(iconPath(drawing_.filled), color);
    painter->strokePath(iconPath(drawing_.outlined),
                        QPen(color, penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->restore();
}

QPixmap IconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap pixels(size);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    paint(&painter, pixels.rect(), mode, state);
    return pixels;
}

QIcon drawnIcon(Icon icon) { return QIcon(new IconEngine(iconDrawing(icon))); }

}  // namespace cinedisc
