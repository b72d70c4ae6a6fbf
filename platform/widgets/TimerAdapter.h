#pragma once

#include "platform/TimerControl.h"

#include <QTimer>

namespace cinedisc {

/// A timer on a QTimer that somebody else owns; every timeout is one tick. The timer is precise, and a late
/// tick moves none of the following ones: there are no bursts.
class TimerAdapter final : public TimerControl {
  public:
    explicit TimerAdapter(QTimer& timer);
    bool Enabled() const override { return timer_.isActive(); }
    /// Enabling a timer that runs leaves its current period as it is.
    void putEnabled(bool on) override;
    int Interval() const override { return timer_.interval(); }
    /// Less than 1 raises run-time error 380. A new interval starts a new period, the same one changes
    /// nothing.
    void putInterval(int milliseconds) override;

  private:
    QTimer& timer_;
};

}  // namespace cinedisc
