#include "control/Notice.h"

#include "control/HeaderWords.h"

#include <QCoreApplication>
#include <QFontMetricsF>

namespace cinedisc {

namespace {

QString say(const char* text) { return QCoreApplication::translate("Notice", text); }

QString wordsFor(dicom::DecodeError::Kind kind) {
    using Kind = dicom::DecodeError::Kind;
    switch (kind) {
        case Kind::CannotRead:
            return say("the file cannot be read");
        case Kind::NotDicom:
            return say("this is no DICOM file");
        case Kind::NoPicture:
            return say("this file holds no picture");
        case Kind::Unsupported:
            return say("the picture is stored in a way that this viewer cannot read");
        case Kind::CutOff:
            return say("the file is cut off");
        case Kind::TooLarge:
            return say("the picture is too large");
        case Kind::Broken:
            break;
    }
    return say("the file is damaged");
}

QString asSentence(QString text) {
    if (text.isEmpty()) return text;
    text[0] = text[0].toUpper();
    return text.endsWith('.') ? text : text + '.';
}

}  // namespace

Notice Notice::of(const dicom::DecodeError& fault, int shownFrame, bool wholeFile) {
    const QString said = harmless(QString::fromStdString(fault.message));
    return {wholeFile ? say("This file cannot be shown") : say("Frame %1 cannot be shown").arg(shownFrame),
            asSentence(said.isEmpty() ? wordsFor(fault.kind) : said)};
}

Notice Notice::ofReading() { return {say("reading …"), {}}; }

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

QString cutOffWords(int frames, int announcedFrames) {
    if (frames <= 0 || frames >= announcedFrames) return {};
    return say("The file is cut off: %1 of %2 frames can be shown").arg(frames).arg(announcedFrames);
}

}  // namespace cinedisc
