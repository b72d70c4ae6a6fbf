#pragma once

namespace cinedisc {

/// A timer as the logic sees it.
class TimerControl {
  public:
    virtual ~TimerControl() = default;
    virtual bool Enabled() const = 0;
    virtual void putEnabled(bool on) = 0;
    virtual int Interval() const = 0;  ///< milliseconds
    virtual void putInterval(int milliseconds) = 0;
};

}  // namespace cinedisc
