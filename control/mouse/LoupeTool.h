#pragma once

#include "control/mouse/MouseTool.h"
#include "control/picture/ViewState.h"
#include "platform/widgets/Icon.h"

namespace cinedisc {

/// A magnifying glass under the pointer while the button is pressed. Changes nothing.
class LoupeTool : public MouseTool {
  public:
    explicit LoupeTool(ViewState& view) : view_(view) {}

    void press(QPointF at) override {
        at_ = at;
        shown_ = true;
    }
    void move(QPointF at) override { at_ = at; }
    void release() override { shown_ = false; }
    void cancel() override { shown_ = false; }
    void paint(QPainter& painter) override;
    QCursor cursor() const override {
        return shown_ ? QCursor(Qt::BlankCursor) : drawnCursor(Icon::Magnify, {10, 10});
    }

  private:
    ViewState& view_;
    QPointF at_;
    bool shown_ = false;
};

}  // namespace cinedisc
