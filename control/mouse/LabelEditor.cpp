#include "control/mouse/LabelEditor.h"

#include <QFocusEvent>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace cinedisc {

namespace {

constexpr int longestText = 200;
constexpr int largestLetters = 48;

}  // namespace

LabelEditor::LabelEditor(QWidget& view) : QLineEdit(&view) {
    setObjectName("labelEditor");
    setAccessibleName(tr("Label text"));
    setMaxLength(longestText);
    setAutoFillBackground(true);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, QColor(20, 20, 22));
    colors.setColor(QPalette::Text, Qt::white);
    setPalette(colors);
    hide();
    connect(this, &QLineEdit::textChanged, this, [this] { fitText(); });
    connect(this, &QLineEdit::returnPressed, this, [this] { handOver(); });
}

void LabelEditor::open(QPointF at, const QString& text, const QFont& letters) {
    QFont own = letters;
    own.setPixelSize(std::min(letters.pixelSize(), largestLetters));
    setFont(own);
    setText(text);
    selectAll();
    fitText();
    move(static_cast<int>(at.x()), static_cast<int>(at.y()) - height() / 2);
    keepInView();
    open_ = true;
    show();
    setFocus(Qt::OtherFocusReason);
}

void LabelEditor::fitText() {
    const int wanted = fontMetrics().horizontalAdvance(text()) + 24;
    resize(std::clamp(wanted, 120, std::max(120, parentWidget()->width())), sizeHint().height());
    keepInView();
}

void LabelEditor::keepInView() {
    const QSize room = parentWidget()->size() - size();
    move(std::clamp(x(), 0, std::max(0, room.width())), std::clamp(y(), 0, std::max(0, room.height())));
}

bool LabelEditor::shut() {
    if (!std::exchange(open_, false)) return false;
    if (hasFocus()) parentWidget()->setFocus(Qt::OtherFocusReason);
    hide();
    return true;
}

void LabelEditor::handOver() {
    if (shut()) emit handedOver(text().trimmed());
}

void LabelEditor::drop() {
    if (shut()) emit dropped();
}

bool LabelEditor::event(QEvent* event) {
    // Keys typed into the line belong to it, whatever commands the window has on them.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Escape || key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void LabelEditor::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) return drop();
    QLineEdit::keyPressEvent(event);
    event->accept();
}

void LabelEditor::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    const auto reason = event->reason();
    if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) handOver();
}

}  // namespace cinedisc
