#include "control/CornerText.h"

#include "control/picture/OutlinedText.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace cinedisc {

namespace {

constexpr double gap = 6;            // between the lines and the view's edge
constexpr double usefulMargin = 96;  // a margin beside the picture that can hold words
constexpr double leastView = 160;    // smaller views carry no text

QFont fontFor(double shorterSide) {
    QFont font;
    font.setPixelSize(shorterSide < 400 ? 10 : shorterSide < 800 ? 12 : 13);
    return font;
}

}  // namespace

void CornerText::paint(QPainter& painter, const QRectF& view, const QRectF& picture, const Lines& lines) {
    if (std::min(view.width(), view.height()) < leastView) return;
    const QFont font = fontFor(std::min(view.width(), view.height()));
    if (font != font_) stamps_.clear();
    font_ = font;

    const QRectF area = view.adjusted(gap, gap, -gap, -gap);
    double left = area.width() / 2 - gap, right = left;
    if (!picture.isEmpty()) {
        const double leftMargin = picture.left() - area.left() - gap;
        const double rightMargin = area.right() - picture.right() - gap;
        if (leftMargin >= usefulMargin) left = std::min(left, leftMargin);
        if (rightMargin >= usefulMargin) right = std::min(right, rightMargin);
    }
    const QRectF leftArea(area.left(), area.top(), left, area.height());
    const QRectF rightArea(area.right() - right, area.top(), right, area.height());
    paintBlock(painter, leftArea, lines.topLeft, Side::Left, End::Top);
    paintBlock(painter, rightArea, lines.topRight, Side::Right, End::Top);
    paintBlock(painter, leftArea, lines.bottomLeft, Side::Left, End::Bottom);
    paintBlock(painter, rightArea, lines.bottomRight, Side::Right, End::Bottom);
}

void CornerText::paintBlock(QPainter& painter, const QRectF& area, const QStringList& lines, Side side,
                            End end) {
    const double ratio = painter.device()->devicePixelRatioF();
    const double height = std::ceil(QFontMetricsF(font_).height() * 1.15);
    double y = end == End::Top ? area.top() : area.bottom() - height * static_cast<double>(lines.size());
    for (const QString& line : lines) {
        const QPixmap& drawn = stamp(line, area.width(), ratio);
        const double x =
            side == Side::Left ? area.left() : area.right() - drawn.width() / drawn.devicePixelRatio();
        painter.drawPixmap(QPointF(std::round(x), std::round(y)), drawn);
        y += height;
    }
}

const QPixmap& CornerText::stamp(const QString& line, double width, double pixelRatio) {
    const QString key = QString("%1|%2|%3").arg(width).arg(pixelRatio).arg(line);
    if (const auto* kept = stamps_.object(key)) return *kept;
    const QFontMetricsF metrics(font_);
    const double rim = 2;
    const QString shown = metrics.elidedText(line, Qt::ElideRight, width - 2 * rim);
    const QSizeF size(std::ceil(metrics.horizontalAdvance(shown)) + 2 * rim,
                      std::ceil(metrics.height()) + 2 * rim);
    auto* pixmap = new QPixmap((size * pixelRatio).toSize());
    pixmap->setDevicePixelRatio(pixelRatio);
    pixmap->fill(Qt::transparent);
    QPainter painter(pixmap);
    painter.setFont(font_);
    drawOutlined(painter, {rim, rim + metrics.ascent()}, shown);
    painter.end();
    const int cost = 1 + pixmap->width() * pixmap->height() / 1000;
    stamps_.insert(key, pixmap, cost);
    return *pixmap;
}

}  // namespace cinedisc
