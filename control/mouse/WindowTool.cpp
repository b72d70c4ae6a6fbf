#include "control/mouse/WindowTool.h"

#include <algorithm>
#include <cmath>

namespace cinedisc {

void WindowTool::press(QPointF at) {
    start_ = at;
    before_ = view_.picture.windowChoice();
    window_ = view_.picture.drawnWindow().window;
    span_ = view_.picture.valueRange().span();
    // In proportion to the window, so that narrow ones can be set finely, but never too slow to leave them.
    gain_ = std::max(window_.width / 256, span_ / 2048);
}

void WindowTool::move(QPointF at) {
    view_.picture.putWindowChoice(before_);
    const QPointF by = at - start_;
    if (by.isNull()) return;
    const bool whole = span_ >= 64;
    const auto rounded = [&](double value) { return whole ? std::round(value) : value; };
    const double narrowest = window_.function == dicom::Window::Function::Linear || whole ? 1 : span_ / 4096;
    if (by.x() != 0) {
        view_.picture.putWindowWidth(std::max(narrowest, rounded(window_.width + by.x() * gain_)));
    }
    if (by.y() != 0) view_.picture.putWindowCenter(rounded(window_.center + by.y() * gain_));
}

}  // namespace cinedisc
