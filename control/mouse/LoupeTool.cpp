#include "control/mouse/LoupeTool.h"

#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace cinedisc {

namespace {

constexpr double magnification = 2.5;
constexpr double leastScale =
    1.5;  // device pixels per image pixel: a reduced picture is magnified beyond its own size

double radiusFor(QSize logicalView) {
    return std::clamp(std::min(logicalView.width(), logicalView.height()) / 5.0, 40.0, 160.0);
}

}  // namespace

void LoupeTool::paint(QPainter& painter) {
    if (!shown_ || !view_.picture.frame()) return;
    const Placement now = view_.placement();
    const QSize square = view_.renderer.squareSize();
    const double ratio = view_.pixelRatio;
    const double scale = now.scale(square);
    const double factor = std::max(magnification, leastScale / scale);
    const double longest = std::max(now.picture.width(), now.picture.height()) * factor;
    if (!(longest < 1 << 30)) return;

    // The picture's point under the pointer stays under it.
    const QPointF at = at_ * ratio;
    const QSize enlarged(static_cast<int>(std::lround(now.picture.width() * factor)),
                         static_cast<int>(std::lround(now.picture.height() * factor)));
    const QPointF share = now.toPicture(at);
    const QPoint corner(static_cast<int>(std::lround(at.x() - share.x() * enlarged.width())),
                        static_cast<int>(std::lround(at.y() - share.y() * enlarged.height())));
    const int radius = static_cast<int>(radiusFor((QSizeF(view_.deviceSize) / ratio).toSize()) * ratio);
    const QRect glass(at.toPoint() - QPoint(radius, radius), QSize(2 * radius, 2 * radius));
    const Placement magnified{QRect(corner, enlarged), view_.deviceSize};
    const QImage image = view_.renderer.part(magnified, glass, view_.smoothing);

    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath round;
    round.addEllipse(QRectF(glass));
    painter.setClipPath(round);
    painter.fillRect(glass, Qt::black);
    if (!image.isNull()) painter.drawImage(glass.intersected(magnified.picture).topLeft(), image);
    painter.setClipping(false);
    painter.setPen(QPen(QColor(0, 0, 0, 160), 4 * ratio));
    painter.drawEllipse(QRectF(glass));
    painter.setPen(QPen(QColor(225, 225, 225), 1.5 * ratio));
    painter.drawEllipse(QRectF(glass));
    painter.restore();
}

}  // namespace cinedisc
