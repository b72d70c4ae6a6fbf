#include "platform/widgets/PopUpPanel.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QApplication>
#include <QEvent>
#include <QShortcut>

#include <algorithm>

namespace cinedisc {

namespace {

QAccessibleInterface* panelInterface(const QString&, QObject* object) {
    auto* panel = qobject_cast<PopUpPanel*>(object);
    return panel ? new QAccessibleWidget(panel, QAccessible::Grouping) : nullptr;
}

}  // namespace

PopUpPanel::PopUpPanel(QWidget& button, QWidget& surface) : QFrame(&surface), button_(button) {
    static const bool once = (QAccessible::installFactory(panelInterface), true);
    Q_UNUSED(once);
    setAutoFillBackground(true);
    if (const auto* pushed = qobject_cast<QAbstractButton*>(&button)) setAccessibleName(pushed->text());
    hide();
    surface.installEventFilter(this);
    auto* escape = new QShortcut(Qt::Key_Escape, this);
    connect(escape, &QShortcut::activated, this, &QWidget::hide);
    // Two panels may be open.
    connect(escape, &QShortcut::activatedAmbiguously, this, &QWidget::hide);
}

void PopUpPanel::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    place();
    raise();
    qApp->installEventFilter(this);
    focusBefore_ = window()->focusWidget();
    const auto choices = findChildren<QAbstractButton*>();
    const auto chosen = std::ranges::find_if(choices, [](const QAbstractButton* choice) {
        return choice->isChecked() || choice->property("active").toBool();
    });
    if (!choices.isEmpty()) (chosen == choices.end() ? choices.front() : *chosen)->setFocus();
}

void PopUpPanel::hideEvent(QHideEvent* event) {
    qApp->removeEventFilter(this);
    if (focusBefore_ && focusBefore_->isVisible()) focusBefore_->setFocus();
    QFrame::hideEvent(event);
}

bool PopUpPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize && isVisible()) place();
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        // The button itself opens and closes it.
        const auto* pressed = static_cast<QWidget*>(watched);
        if (pressed != this && !isAncestorOf(pressed) && pressed != &button_) hide();
    }
    return QFrame::eventFilter(watched, event);
}

void PopUpPanel::place() {
    adjustSize();
    constexpr int gap = 2;
    const QWidget* surface = parentWidget();
    const QPoint under = button_.mapTo(surface, QPoint(0, button_.height() + gap));
    move(qBound(0, under.x(), qMax(0, surface->width() - width())), under.y());
}

}  // namespace cinedisc
