#pragma once

#include "control/mouse/MouseTool.h"
#include "control/picture/ViewState.h"

namespace cinedisc {

/// Moves the picture with the pointer, as far as it cannot be lost.
class PanTool : public MouseTool {
  public:
    explicit PanTool(ViewState& view) : view_(view) {}

    void press(QPointF at) override {
        start_ = at;
        before_ = view_.zoom;
        isHeld_ = true;
    }
    void move(QPointF at) override {
        view_.zoom = before_;
        view_.panBy((at - start_) * view_.pixelRatio);
    }
    void release() override { isHeld_ = false; }
    void cancel() override {
        view_.zoom = before_;
        isHeld_ = false;
    }
    void startAnew(QPointF at) override { press(at); }
    QCursor cursor() const override { return isHeld_ ? Qt::ClosedHandCursor : Qt::OpenHandCursor; }

  private:
    ViewState& view_;
    QPointF start_;
    ViewZoom before_;
    bool isHeld_ = false;
};

}  // namespace cinedisc
