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

StripWheel::StripWheel(QList<QWidget*> watched)
    : watched_(std::move(watched)), filter_(rollMainStrip), system_([this](QWidget& under, WheelRoll roll) {
          if (watched_.contains(&under)) rollMainStrip(roll);
      }) {}

void StripWheel::setMainScrollBar(RangeControl* sb1) { mainScrollBar = sb1; }

void StripWheel::MouseHook() {
    // A wheel is always taken to be there.
    WheelPresent_ = true;
    for (QWidget* widget : watched_) filter_.watch(*widget);
    const auto system = systemVersion();
    if (!system) return;
    OsWheelCode_ = wheel::osWheelCode(system->platform, system->major, system->minor, OsWheelCode_);
    system_.listenFor(wheel::wheelMessage(OsWheelCode_, [] { return registeredMessage("MSWHEEL_ROLLMSG"); }));
}

void StripWheel::MouseUnhook() {
    for (QWidget* widget : watched_) filter_.unwatch(*widget);
    system_.listenFor(0);
}

}  // namespace cinedisc
