#pragma once

#include "control/mouse/MouseTool.h"
#include "control/picture/ViewState.h"

namespace cinedisc {

/// Up enlarges, down reduces, around the point where the drag began.
class ZoomTool : public MouseTool {
  public:
    explicit ZoomTool(ViewState& view) : view_(view) {}

    void press(QPointF at) override;
    void move(QPointF at) override;
    void cancel() override { view_.zoom = before_; }
    void startAnew(QPointF at) override { press(at); }
    QCursor cursor() const override { return Qt::SizeVerCursor; }

  private:
    ViewState& view_;
    QPointF start_;
    ViewZoom before_;
    double percent_ = 100;  ///< drawn when the drag began
    QPointF anchor_;        ///< the picture's point there
};

}  // namespace cinedisc
