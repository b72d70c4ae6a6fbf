#include "control/picture/OutlinedText.h"

#include <QFontMetricsF>

#include <algorithm>

namespace cinedisc {

void drawOutlined(QPainter& painter, QPointF baseline, const QString& text) {
    const double rim = std::max(1.0, QFontMetricsF(painter.font()).height() / 20);
    painter.setPen(QColor(0, 0, 0));
    for (const double dy : {-rim, 0.0, rim}) {
        for (const double dx : {-rim, 0.0, rim}) {
            if (dx != 0 || dy != 0) painter.drawText(baseline + QPointF(dx, dy), text);
        }
    }
    painter.setPen(QColor(255, 255, 255));
    painter.drawText(baseline, text);
}

}  // namespace cinedisc
