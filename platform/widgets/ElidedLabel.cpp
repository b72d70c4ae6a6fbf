#include "platform/widgets/ElidedLabel.h"

#include "platform/widgets/PlainTextDelegate.h"

#include <QHelpEvent>
#include <QStyle>
#include <QStylePainter>
#include <QToolTip>

namespace cinedisc {

ElidedLabel::ElidedLabel(const QString& text, const QString& sample, QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setText(text);
    ensurePolished();
    constexpr int room = 4;
    hint_ = QSize(fontMetrics().horizontalAdvance(sample) + room, fontMetrics().height() + room);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QLabel::event(event);
    const bool cut = drawnText() != text();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), cut ? plainToolTip(text()) : toolTip(),
                       this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    const QString drawn = drawnText();
    // A name in a right-to-left script keeps the label's alignment, its own letters run as they must.
    const int alignment = QStyle::visualAlignment(layoutDirection(), this->alignment()) | Qt::TextSingleLine;
    painter.drawItemText(contentsRect(), alignment, palette(), isEnabled(), drawn, foregroundRole());
}

QString ElidedLabel::drawnText() const {
    return fontMetrics().elidedText(oneLine(text()), elideMode_, contentsRect().width());
}

}  // namespace cinedisc
