#include "viewerwindow/StripWheel.h"

#include "platform/RunTimeError.h"

namespace cinedisc {

namespace {

RangeControl* mainScrollBar = nullptr;

void rollMainStrip(WheelRoll direction) {
    if (!mainScrollBar) throw RunTimeError::objectNotSet();
    wheel::roll(*mainScrollBar, direction);
}

}  // namespace

StripWheel::StripWheel(QList<QWidget*> watched) : watched_(std::move(watched)), filter_(rollMainStrip) {}

void StripWheel::setMainScrollBar(RangeControl* sb1) { mainScrollBar = sb1; }

void StripWheel::MouseHook() {
    // A wheel is always taken to be there.
    WheelPresent_ = true;
    for (QWidget* widget : watched_) filter_.watch(*widget);
}

void StripWheel::MouseUnhook() {
    for (QWidget* widget : watched_) filter_.unwatch(*widget);
}

}  // namespace cinedisc
