#include "platform/widgets/IconEngine.h"

#include "platform/widgets/IconPath.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

namespace cinedisc {

namespace {

constexpr qreal grid = 24;
constexpr qreal penWidth = 1.7;

QColor colorFor(QIcon::Mode mode, QIcon::State state) {
    const QPalette palette = QGuiApplication::palette();
    // What is in force stands on a light ground.
    if (state == QIcon::On) return palette.color(QPalette::Base);
    if (mode == QIcon::Disabled) return palette.color(QPalette::Disabled, QPalette::ButtonText);
    return palette.color(mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText);
}

/// Moves the grid that drawings are made on into a rectangle.
void placeGrid(QPainter& painter, const QRectF& rect, qreal edge, Side side = Side::AsDrawn) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center());
    const qreal scale = qMin(rect.width(), rect.height()) / edge;
    painter.scale(side == Side::Mirrored ? -scale : scale, scale);
    painter.translate(-edge / 2, -edge / 2);
}

QPen roundPen(const QColor& color, qreal width) {
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paintProgramIcon(QPainter& painter, const QRectF& rect) {
    constexpr qreal fineGrid = 64, lineWidth = 3.5;
    placeGrid(painter, rect, fineGrid);
    for (const ProgramLayer& layer : programIcon()) {
        painter.fillPath(iconPath(layer.filled), QColor(layer.colour));
        painter.strokePath(iconPath(layer.outlined), roundPen(layer.colour, lineWidth));
    }
}

}  // namespace

void IconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) {
    painter->save();
    if (icon_ == Icon::Program) {
        paintProgramIcon(*painter, rect);
    } else {
        const IconDrawing& drawing = iconDrawing(icon_);
        const QColor color = colorFor(mode, state);
        placeGrid(*painter, rect, grid, drawing.side);
        painter->fillPath(iconPath(drawing.filled), color);
        painter->strokePath(iconPath(drawing.outlined), roundPen(color, penWidth));
    }
    painter->restore();
}

QPixmap IconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap pixels(size);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    paint(&painter, pixels.rect(), mode, state);
    return pixels;
}

QIcon drawnIcon(Icon icon) { return QIcon(new IconEngine(icon)); }

QCursor drawnCursor(Icon icon, QPoint hotSpot) {
    const qreal density = qGuiApp->devicePixelRatio();
    QPixmap pixels(QSize(iconEdge, iconEdge) * density);
    pixels.setDevicePixelRatio(density);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    placeGrid(painter, QRectF(0, 0, iconEdge, iconEdge), grid);
    const IconDrawing& drawing = iconDrawing(icon);
    QPainterPath shape = iconPath(drawing.filled);
    shape.addPath(iconPath(drawing.outlined));
    // With a dark rim it is seen on any grey.
    constexpr qreal rim = 2.6;
    painter.strokePath(shape, roundPen(Qt::black, penWidth + rim));
    painter.fillPath(iconPath(drawing.filled), Qt::white);
    painter.strokePath(shape, roundPen(Qt::white, penWidth));
    painter.end();
    return QCursor(pixels, hotSpot.x() * iconEdge / int(grid), hotSpot.y() * iconEdge / int(grid));
}

}  // namespace cinedisc
