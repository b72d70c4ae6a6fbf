#include "control/mouse/ZoomTool.h"

#include <algorithm>
#include <cmath>

namespace cinedisc {

namespace {

constexpr double pixelsToDouble = 120;  // logical pixels of a drag that double the size
constexpr double smallest = 5, largest = 3200;

}  // namespace

void ZoomTool::press(QPointF at) {
    start_ = at;
    before_ = view_.zoom;
    const Placement placement = view_.placement();
    percent_ = placement.scale(view_.renderer.squareSize()) * 100;
    anchor_ = placement.toPicture(at * view_.pixelRatio);
}

void ZoomTool::move(QPointF at) {
    view_.zoom = before_;
    const double up = start_.y() - at.y();
    if (up == 0) return;
    const double wanted = std::clamp(percent_ * std::exp2(up / pixelsToDouble), smallest, largest);
    view_.zoom.putBestFit(false);
    view_.zoom.putPercent(static_cast<qint32>(std::lround(wanted)));
    view_.panBy(start_ * view_.pixelRatio - view_.placement().toView(anchor_));
}

}  // namespace cinedisc
