#include "control/picture/OutlinedText.h"

#include <QFontMetricsF>

#include <algorithm>

namespace cinedisc {

namespace {

constexpr QRgb darkInk = qRgb(32, 33, 36);

void drawRim(QPainter& painter, QPointF baseline, const QString& text) {
    const double rim = rimAround(painter.font());
    painter.setPen(QColor(0, 0, 0));
    for (const double dy : {-rim, 0.0, rim}) {
        for (const double dx : {-rim, 0.0, rim}) {
            if (dx != 0 || dy != 0) painter.drawText(baseline + QPointF(dx, dy), text);
        }
    }
}

}  // namespace

double rimAround(const QFont& font) { return std::max(1.0, QFontMetricsF(font).height() / 20); }

void drawLayer(QPainter& painter, QPointF baseline, const QString& text, TextLayer layer) {
    if (layer == TextLayer::Rim) return drawRim(painter, baseline, text);
    painter.setPen(layer == TextLayer::Light ? QColor(255, 255, 255) : QColor(darkInk));
    painter.drawText(baseline, text);
}

void drawInked(QPainter& painter, QPointF baseline, const QString& text, TextInk ink) {
    if (ink == TextInk::PlainDark) return drawLayer(painter, baseline, text, TextLayer::Dark);
    drawLayer(painter, baseline, text, TextLayer::Rim);
    drawLayer(painter, baseline, text, TextLayer::Light);
}

}  // namespace cinedisc
