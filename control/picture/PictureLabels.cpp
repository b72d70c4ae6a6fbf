#include "control/picture/PictureLabels.h"

#include "control/picture/OutlinedText.h"
#include "control/picture/WrappedText.h"

#include <QFontMetricsF>

#include <algorithm>

namespace cinedisc {

namespace {

constexpr int smallestLetters = 5;  // pixels

}  // namespace

QFont PictureLabels::font(const QRectF& picture) {
    QFont font;
    font.setBold(true);
    font.setPixelSize(
        static_cast<int>(std::clamp(std::max(picture.width(), picture.height()) / 40, 11.0, 400.0)));
    return font;
}

bool PictureLabels::any(int frame) const {
    const auto found = frames_.find(frame);
    return found != frames_.end() && !found->second.empty();
}

PictureLabels::Layout PictureLabels::layout(const PictureLabel& label, const QRectF& picture) {
    const QPointF at(picture.x() + label.at.x() * picture.width(),
                     picture.y() + label.at.y() * picture.height());
    Layout result{font(picture), {}, {}};
    while (true) {
        const QFontMetricsF metrics(result.font);
        const double rim = rimAround(result.font);
        const QRectF room = picture.adjusted(rim, rim, -rim, -rim);
        result.rows = wrapped(label.text, result.font, std::max(1.0, room.width()));
        const QSizeF size(widestOf(result.rows, metrics),
                          metrics.height() * static_cast<double>(result.rows.size()));
        const bool fits = size.width() <= room.width() && size.height() <= room.height();
        if (fits || result.font.pixelSize() <= smallestLetters) {
            const QPointF last(room.right() - size.width(), room.bottom() - size.height());
            result.box = {QPointF(std::max(room.left(), std::min(at.x(), last.x())),
                                  std::max(room.top(), std::min(at.y() - metrics.height() / 2, last.y()))),
                          size};
            return result;
        }
        result.font.setPixelSize(result.font.pixelSize() * 3 / 4);
    }
}

QPointF PictureLabels::place(const PictureLabel& label, const QRectF& picture) {
    const Layout now = layout(label, picture);
    const QPointF start =
        now.box.topLeft() + QPointF(0, QFontMetricsF(now.font).height() / 2) - picture.topLeft();
    return {start.x() / picture.width(), start.y() / picture.height()};
}

void PictureLabels::paint(QPainter& painter, int frame, const QRectF& picture) const {
    if (!any(frame)) return;
    painter.save();
    for (const auto& label : frames_.at(frame)) {
        if (label.isBeingTyped) continue;
        const Layout now = layout(label, picture);
        const QFontMetricsF metrics(now.font);
        painter.setFont(now.font);
        QPointF baseline = now.box.topLeft() + QPointF(0, metrics.ascent());
        for (const QString& row : now.rows) {
            drawOutlined(painter, baseline, row);
            baseline.ry() += metrics.height();
        }
    }
    painter.restore();
}

int PictureLabels::at(int frame, QPointF point, const QRectF& picture) const {
    if (!any(frame)) return -1;
    const auto& labels = frames_.at(frame);
    for (int i = static_cast<int>(labels.size()) - 1; i >= 0; --i) {
        if (box(labels[static_cast<std::size_t>(i)], picture).adjusted(-4, -2, 4, 2).contains(point))
            return i;
    }
    return -1;
}

}  // namespace cinedisc
