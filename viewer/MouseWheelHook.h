#pragma once

namespace cinedisc {

/// Where wheel rolls over the strip come from. A window hooks when it loads and unhooks when it unloads.
class MouseWheelHook {
  public:
    virtual ~MouseWheelHook() = default;
    /// Errors end it quietly and leave the wheel without effect.
    virtual void MouseHook() = 0;
    virtual void MouseUnhook() = 0;
};

}  // namespace cinedisc
