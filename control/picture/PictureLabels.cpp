#include "control/picture/PictureLabels.h"

#include "control/picture/OutlinedText.h"

#include <QFontMetricsF>

#include <algorithm>

namespace cinedisc {

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

QRectF PictureLabels::box(const PictureLabel& label, const QRectF& picture) {
    const QFontMetricsF metrics(font(picture));
    const QPointF at(picture.x() + label.at.x() * picture.width(),
                     picture.y() + label.at.y() * picture.height());
    const double height = metrics.height();
    return {at.x(), at.y() - height / 2, metrics.horizontalAdvance(label.text), height};
}

void PictureLabels::paint(QPainter& painter, int frame, const QRectF& picture) const {
    if (!any(frame)) return;
    painter.save();
    painter.setFont(font(picture));
    const double ascent = QFontMetricsF(painter.font()).ascent();
    for (const auto& label : frames_.at(frame)) {
        if (label.isBeingTyped) continue;
        drawOutlined(painter, box(label, picture).topLeft() + QPointF(0, ascent), label.text);
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
