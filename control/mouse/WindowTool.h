#pragma once

#include "control/mouse/MouseTool.h"
#include "control/picture/ViewState.h"
#include "platform/widgets/Icon.h"

namespace cinedisc {

/// Brightness and contrast: right widens the window, up lowers its centre. Colour has no window to move.
class WindowTool : public MouseTool {
  public:
    explicit WindowTool(ViewState& view) : view_(view) {}

    void press(QPointF at) override;
    void move(QPointF at) override;
    void cancel() override { view_.picture.putWindowChoice(before_); }
    void startAnew(QPointF at) override { press(at); }
    bool outlivesFile() const override { return false; }
    QCursor cursor() const override { return drawnCursor(Icon::Window, {12, 12}); }

  private:
    ViewState& view_;
    QPointF start_;
    WindowChoice before_;
    dicom::Window window_;
    double gain_ = 1;  ///< window units a pixel
    bool inWholeNumbers_ = true;
    double narrowest_ = 1;
};

}  // namespace cinedisc
