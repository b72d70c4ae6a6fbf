#include "panels/KeySplitter.h"

#include <QKeyEvent>
#include <QPainter>

namespace cinedisc {

namespace {

class KeyHandle final : public QSplitterHandle {
  public:
    using QSplitterHandle::QSplitterHandle;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        constexpr int step = 16;
        const bool sideways = orientation() == Qt::Horizontal;
        const int here = sideways ? x() : y();
        if (event->key() == (sideways ? Qt::Key_Left : Qt::Key_Up))
            moveSplitter(here - step);
        else if (event->key() == (sideways ? Qt::Key_Right : Qt::Key_Down))
            moveSplitter(here + step);
        else
            QSplitterHandle::keyPressEvent(event);
    }
    void paintEvent(QPaintEvent* event) override {
        QSplitterHandle::paintEvent(event);
        if (!hasFocus()) return;
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::BrightText));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
};

}  // namespace

QSplitterHandle* KeySplitter::createHandle() {
    auto* handle = new KeyHandle(orientation(), this);
    handle->setFocusPolicy(Qt::TabFocus);
    handle->setAccessibleName(handleName_);
    return handle;
}

}  // namespace cinedisc
