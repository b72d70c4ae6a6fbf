#include "control/HeaderPage.h"

#include "control/words/ViewWords.h"

#include <QFontDatabase>
#include <QKeyEvent>

#include <utility>

namespace cinedisc {

HeaderPage::HeaderPage(QWidget& view) : QPlainTextEdit(&view) {
    setObjectName("headerPage");
    setAccessibleName(viewWords::headerPageName());
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setFrameShape(QFrame::NoFrame);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    QPalette colors = palette();
    colors.setColor(QPalette::Base, QColor(24, 24, 26));
    colors.setColor(QPalette::Text, QColor(222, 222, 222));
    setPalette(colors);
    hide();
}

void HeaderPage::putText(const QString& text) {
    rest_ = text;
    shown_ = 0;
    setPlainText(takePiece());
    shown_ < rest_.size() ? next_.start(0, this) : next_.stop();
}

/// Whole lines, but for lines that are too long for that.
QString HeaderPage::takePiece() {
    constexpr qsizetype most = 200'000;
    auto end = rest_.size();
    if (end - shown_ > most) {
        const auto lineEnd = rest_.lastIndexOf(u'\n', shown_ + most);
        end = lineEnd < shown_ ? shown_ + most : lineEnd + 1;
    }
    const auto from = std::exchange(shown_, end);
    return rest_.mid(from, end - from);
}

void HeaderPage::timerEvent(QTimerEvent* event) {
    if (event->timerId() != next_.timerId()) return QPlainTextEdit::timerEvent(event);
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(takePiece());
    if (shown_ < rest_.size()) return;
    next_.stop();
    rest_.clear();
    shown_ = 0;
}

bool HeaderPage::event(QEvent* event) {
    // What copies the picture elsewhere copies the selected text here.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool copies = key->matches(QKeySequence::Copy) && textCursor().hasSelection();
        if (copies || key->matches(QKeySequence::SelectAll)) {
            event->accept();
            return true;
        }
    }
    return QPlainTextEdit::event(event);
}

}  // namespace cinedisc
