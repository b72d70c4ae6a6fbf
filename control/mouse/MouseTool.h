#pragma once

#include <QCursor>
#include <QPainter>
#include <QPointF>

namespace cinedisc {

/// What a drag with the left button does. Owned by the component; points are in the view's logical pixels,
/// relative to the area that pictures are drawn in. The component repaints after every call.
class MouseTool {
  public:
    virtual ~MouseTool() = default;

    virtual void press(QPointF at) = 0;
    virtual void move(QPointF at) = 0;
    /// The drag is over and what it did stays.
    virtual void release() {}
    /// The drag is over and everything is as it was before.
    virtual void cancel() = 0;

    virtual void doubleClick(QPointF) {}
    /// Whether the tool has a use for a key outside a drag; then it has been used.
    virtual bool takesKey(int) const { return false; }
    virtual void useKey(int) {}
    /// Someone else has put the value that the drag changes: the drag goes on from that value, with the
    /// pointer at `at`.
    virtual void startAnew(QPointF) {}
    /// The picture is about to be copied: what is being put on it counts as done.
    virtual void finish() {}
    /// Another frame or file is about to be shown, or another tool to be chosen.
    virtual void leaveFrame() {}
    /// Whether a drag goes on when another file is loaded meanwhile.
    virtual bool outlivesFile() const { return true; }
    /// On top of the picture, in the view's logical pixels.
    virtual void paint(QPainter&) {}
    virtual QCursor cursor() const { return Qt::ArrowCursor; }
};

}  // namespace cinedisc
