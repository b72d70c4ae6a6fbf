#include "viewerwindow/FullScreen.h"

#include <QEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QSplitter>

#include <utility>

namespace cinedisc {

FullScreen::FullScreen(QMainWindow& window, QWidget& surface, QWidget& picture)
    : QObject(&window), window_(window), surface_(surface), picture_(picture) {
    surface.installEventFilter(this);
}

void FullScreen::enter() {
    home_ = picture_.parentWidget();
    wasMaximized_ = window_.isMaximized();
    frame_ = picture_.geometry();
    if (auto* splitter = qobject_cast<QSplitter*>(home_)) {
        place_ = splitter->indexOf(&picture_);
        sizes_ = splitter->saveState();
    }
    picture_.setParent(&surface_);
    window_.menuBar()->hide();
    window_.showFullScreen();
    picture_.setGeometry(surface_.rect());
    picture_.show();
    picture_.raise();
    picture_.setFocus();
}

void FullScreen::leave() {
    if (!isOn()) return;
    QWidget* home = std::exchange(home_, nullptr);
    if (auto* splitter = qobject_cast<QSplitter*>(home)) {
        splitter->insertWidget(place_, &picture_);
        splitter->restoreState(sizes_);
    } else {
        picture_.setParent(home);
        picture_.setGeometry(frame_);
    }
    picture_.show();
    window_.menuBar()->show();
    wasMaximized_ ? window_.showMaximized() : window_.showNormal();
    picture_.setFocus();
}

bool FullScreen::eventFilter(QObject* watched, QEvent* event) {
    if (isOn() && event->type() == QEvent::Resize) picture_.setGeometry(surface_.rect());
    return QObject::eventFilter(watched, event);
}

}  // namespace cinedisc
