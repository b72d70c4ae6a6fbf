#include "control/mouse/MouseTools.h"

#include "control/mouse/LabelTool.h"
#include "control/mouse/LoupeTool.h"
#include "control/mouse/PanTool.h"
#include "control/mouse/WindowTool.h"
#include "control/mouse/ZoomTool.h"
#include "viewer/ViewerControl.h"

#include <QWidget>

#include <utility>

namespace cinedisc {

namespace {

std::unique_ptr<MouseTool> makeTool(qint32 mode, ViewState& view, QWidget& widget) {
    switch (mode) {
        case ViewerControl::MouseWindow:
            return std::make_unique<WindowTool>(view);
        case ViewerControl::MouseZoom:
            return std::make_unique<ZoomTool>(view);
        case ViewerControl::MouseMagnify:
            return std::make_unique<LoupeTool>(view);
        case ViewerControl::MousePan:
            return std::make_unique<PanTool>(view);
        case ViewerControl::MouseLabel:
            return std::make_unique<LabelTool>(view, widget);
        default:
            return nullptr;
    }
}

}  // namespace

MouseTool* MouseTools::tool(qint32 mode) {
    const auto found = tools_.find(mode);
    if (found != tools_.end()) return found->second.get();
    auto made = makeTool(mode, view_, widget_);
    return made ? (tools_[mode] = std::move(made)).get() : nullptr;
}

void MouseTools::choose(qint32 mode) {
    MouseTool* wanted = tool(mode);
    if (wanted == chosen_) return;
    if (chosen_) chosen_->leaveFrame();
    if (dragged_) std::exchange(dragged_, nullptr)->release();
    chosen_ = wanted;
}

void MouseTools::press(QPointF at) {
    if (dragged_ || !chosen_) return;
    dragged_ = chosen_;
    dragged_->press(pointer_ = at);
}

void MouseTools::move(QPointF at) {
    if (dragged_) dragged_->move(pointer_ = at);
}

void MouseTools::release(QPointF at) {
    if (!dragged_) return;
    MouseTool* tool = std::exchange(dragged_, nullptr);
    tool->move(at);
    tool->release();
}

void MouseTools::doubleClick(QPointF at) {
    if (!chosen_) return;
    press(at);
    chosen_->doubleClick(at);
}

void MouseTools::cancel() {
    if (dragged_) std::exchange(dragged_, nullptr)->cancel();
}

void MouseTools::startAnew() {
    if (dragged_) dragged_->startAnew(pointer_);
}

void MouseTools::finish() {
    if (chosen_) chosen_->finish();
}

void MouseTools::leaveFrame() {
    if (chosen_) chosen_->leaveFrame();
}

void MouseTools::leaveFile() {
    leaveFrame();
    if (dragged_ && !dragged_->outlivesFile()) dragged_ = nullptr;
}

void MouseTools::paint(QPainter& painter) {
    if (dragged_) {
        dragged_->paint(painter);
    } else if (chosen_) {
        chosen_->paint(painter);
    }
}

}  // namespace cinedisc
