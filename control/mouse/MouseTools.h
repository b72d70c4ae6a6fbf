#pragma once

#include "control/mouse/MouseTool.h"
#include "control/picture/ViewState.h"

#include <map>
#include <memory>

namespace cinedisc {

/// The tools of one view, the chosen one, and the drag in progress. A drag belongs to the tool that it began
/// with.
class MouseTools {
  public:
    MouseTools(ViewState& view, QWidget& widget) : view_(view), widget_(widget) {}

    /// By the number of the contract's MouseMode; a number without a tool chooses none.
    void choose(qint32 mode);
    MouseTool* chosen() const { return chosen_; }

    bool dragging() const { return dragged_ != nullptr; }
    void press(QPointF at);
    void move(QPointF at);
    void release(QPointF at);
    void doubleClick(QPointF at);
    void cancel();
    /// Called after zoom, place or window have been put.
    void startAnew();
    /// Called before the picture is copied.
    void finish();
    /// Called before another frame, or another file, is shown.
    void leaveFrame();
    void leaveFile();
    void paint(QPainter& painter);

  private:
    MouseTool* tool(qint32 mode);

    ViewState& view_;
    QWidget& widget_;
    std::map<qint32, std::unique_ptr<MouseTool>> tools_;
    MouseTool* chosen_ = nullptr;
    MouseTool* dragged_ = nullptr;
    QPointF pointer_;  ///< where the drag has come to
};

}  // namespace cinedisc
