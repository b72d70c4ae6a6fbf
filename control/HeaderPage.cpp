#include "control/HeaderPage.h"

#include "control/words/ViewWords.h"

#include <QFontDatabase>
#include <QKeyEvent>

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
