#include "control/HeaderPage.h"

#include <QFontDatabase>

namespace cinedisc {

HeaderPage::HeaderPage(QWidget& view) : QPlainTextEdit(&view) {
    setObjectName("headerPage");
    setAccessibleName(tr("Header of the file"));
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

}  // namespace cinedisc
