#include "control/Notice.h"

#include "control/words/ViewWords.h"

#include <QFontMetricsF>

namespace cinedisc {

Notice Notice::of(const dicom::DecodeError& fault, int shownFrame, bool wholeFile) {
    return {wholeFile ? viewWords::fileNotShown() : viewWords::frameNotShown(shownFrame),
            viewWords::reason(fault)};
}

Notice Notice::ofReading() { return {viewWords::reading(), {}}; }

QString Notice::words() const { return isOfReading() ? heading : heading + ". " + reason; }

void Notice::paint(QPainter& painter, const QRectF& area, const QColor& color) const {
    constexpr int flags = Qt::AlignCenter | Qt::TextWordWrap;
    const double gap = area.width() < 200 ? 4 : 16;
    const QRectF room = area.adjusted(gap, gap, -gap, -gap);
    if (room.width() < 8 || room.height() < 8) return;
    const QString text = isOfReading() ? heading : heading + ".\n" + reason;
    painter.save();
    painter.setPen(color);
    for (int size = area.width() < 400 ? 12 : 16; size >= 8; --size) {
        QFont font = painter.font();
        font.setPixelSize(size);
        painter.setFont(font);
        const QRectF taken = painter.boundingRect(room, flags, text);
        if (taken.height() <= room.height() && taken.width() <= room.width()) break;
    }
    painter.setClipRect(area, Qt::IntersectClip);
    painter.drawText(room, flags, text);
    painter.restore();
}

}  // namespace cinedisc
