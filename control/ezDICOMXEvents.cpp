#include "control/ezDICOMXParts.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <utility>

namespace cinedisc {

void ezDICOMX::timerEvent(QTimerEvent* event) {
    if (event->timerId() != parts_->noticeDelay.timerId()) return QWidget::timerEvent(event);
    parts_->noticeDelay.stop();
    update();
}

void ezDICOMX::paintEvent(QPaintEvent*) {
    if (parts_->role == ViewRole::Probe) return;
    parts_->layOut();
    parts_->view.picture.refine();
    // The frame may arrive from here on: what is drawn is what has been told, and the arrival draws again.
    const auto notice = parts_->describe();
    if (parts_->role == ViewRole::Preview) parts_->view.representative.follow(parts_->view.picture);
    ViewPainter::Look look;
    look.role = parts_->role;
    look.fill = parts_->backgroundFill;
    look.whiteFill = parts_->backgroundColor == 0;
    look.sunkenBorder = parts_->thumbStyle == 2;
    look.highlighted = parts_->isReachedByKey && hasFocus();
    look.coveredAtTop = parts_->coveredAtTop;
    look.marked = parts_->isMarked;
    look.focusColour = palette().color(QPalette::BrightText);
    look.mark = palette().color(QPalette::Link);
    QPainter painter(this);
    parts_->painter.paint(painter, rect(), parts_->content(), parts_->view, notice, parts_->tools, look);
    parts_->lookAhead();
    const auto& picture = parts_->view.picture;
    const std::pair drawn(picture.fileRevision(), picture.currentFrame());
    if (!isReading() && std::exchange(parts_->drawn, drawn) != drawn) emit frameDrawn();
}

void ezDICOMX::resizeEvent(QResizeEvent*) {
    parts_->layOut();
    parts_->placeChildren();
}

void ezDICOMX::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || parts_->role == ViewRole::Probe) return event->ignore();
    if (parts_->role == ViewRole::Preview) {
        parts_->pressedAt = event->position();
        return;
    }
    parts_->layOut();
    parts_->tools.press(event->position() - parts_->content().topLeft());
    if (parts_->tools.chosen()) setCursor(parts_->tools.chosen()->cursor());
    update();
}

void ezDICOMX::mouseMoveEvent(QMouseEvent* event) {
    if (!parts_->tools.dragging()) return event->ignore();
    parts_->tools.move(event->position() - parts_->content().topLeft());
    update();
    parts_->tellChoices();
}

void ezDICOMX::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    if (parts_->pressedAt) {
        const QPointF moved = event->position() - *std::exchange(parts_->pressedAt, std::nullopt);
        const bool dragged = moved.manhattanLength() >= QApplication::startDragDistance();
        if (!dragged && rect().contains(event->position().toPoint())) emit clicked();
        return;
    }
    parts_->tools.release(event->position() - parts_->content().topLeft());
    parts_->tellChoices();
    if (parts_->tools.chosen()) setCursor(parts_->tools.chosen()->cursor());
    update();
}

void ezDICOMX::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || parts_->role != ViewRole::Main) return mousePressEvent(event);
    parts_->layOut();
    parts_->tools.doubleClick(event->position() - parts_->content().topLeft());
    update();
}

bool ezDICOMX::event(QEvent* event) {
    // Keys that the tool in hand has a use for come to it, whatever commands the window has on them.
    if (event->type() == QEvent::ShortcutOverride && parts_) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool cancels = key == Qt::Key_Escape && parts_->tools.dragging();
        if (cancels || (parts_->tools.chosen() && parts_->tools.chosen()->takesKey(key))) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::ToolTip && parts_ && parts_->role == ViewRole::Preview) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), parts_->toolTip(), this);
        return true;
    }
    return QWidget::event(event);
}

/// The picture has the keyboard most of the time, which is no news: a frame round it would only be in the
/// way.
void ezDICOMX::focusInEvent(QFocusEvent* event) {
    const bool byTab = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    parts_->isReachedByKey = byTab || parts_->role == ViewRole::Preview;
    QWidget::focusInEvent(event);
}

void ezDICOMX::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    auto& tools = parts_->tools;
    if (key == Qt::Key_Escape && tools.dragging()) {
        tools.cancel();
        if (tools.chosen()) setCursor(tools.chosen()->cursor());
        parts_->tellChoices();
        return update();
    }
    if (tools.chosen() && tools.chosen()->takesKey(key)) {
        tools.chosen()->useKey(key);
        return update();
    }
    if (parts_->role == ViewRole::Preview && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        emit clicked();
        return;
    }
    QWidget::keyPressEvent(event);
}

}  // namespace cinedisc
