#include "control/pipeline/WindowChoice.h"

#include <cmath>

namespace cinedisc {

namespace {

bool putsBack(const WindowInForce& now, double returned, double put) {
    return now.byTable && std::abs(returned - put) <= 0.5;
}

}  // namespace

void WindowChoice::putCenter(const WindowInForce& own, double center) {
    const WindowInForce now = over(own);
    if (!std::isfinite(center) || putsBack(now, now.window.center, center)) return;
    chosen_ = now.window;
    chosen_->center = center;
}

void WindowChoice::putWidth(const WindowInForce& own, double width) {
    const WindowInForce now = over(own);
    if (!usableWidth(width, now.window.function) || putsBack(now, now.window.width, width)) return;
    chosen_ = now.window;
    chosen_->width = width;
}

}  // namespace cinedisc
