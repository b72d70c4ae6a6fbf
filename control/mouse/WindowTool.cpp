#include "control/mouse/WindowTool.h"

#include <algorithm>
#include <cmath>

namespace cinedisc {

namespace {

constexpr double leastWholeSpan = 64;    // values that lie closer take windows between whole numbers
constexpr double slowestWhole = 1. / 8;  // units a pixel

}  // namespace

void WindowTool::press(QPointF at) {
    start_ = at;
    before_ = view_.picture.windowChoice();
    window_ = view_.picture.drawnWindow().window;
    if (view_.picture.isColor()) return;
    const double used = view_.picture.usedRange().span();
    inWholeNumbers_ = view_.picture.rangeOfBits().span() >= leastWholeSpan;
    // In proportion to the window, so that narrow ones can be set finely, but never too slow to leave them.
    const double slowest = inWholeNumbers_ ? slowestWhole : 0;
    gain_ = std::max({window_.width / 256, used / 2048, slowest});
    const bool isLinear = window_.function == dicom::Window::Function::Linear;
    narrowest_ = isLinear || inWholeNumbers_ ? 1 : gain_ / 2;
}

void WindowTool::move(QPointF at) {
    view_.picture.putWindowChoice(before_);
    const QPointF by = at - start_;
    const auto rounded = [this](double value) { return inWholeNumbers_ ? std::round(value) : value; };
    if (by.x() != 0) {
        view_.picture.putWindowWidth(std::max(narrowest_, rounded(window_.width + by.x() * gain_)));
    }
    if (by.y() != 0) view_.picture.putWindowCenter(rounded(window_.center + by.y() * gain_));
}

}  // namespace cinedisc
