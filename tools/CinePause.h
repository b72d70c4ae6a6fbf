#pragma once

#include "platform/TimerControl.h"

namespace cinedisc {

/// Stops the cine for as long as it lives: what is exported is what was shown.
class CinePause {
  public:
    explicit CinePause(TimerControl& clock) : clock_(clock), wasPlaying_(clock.Enabled()) {
        clock_.putEnabled(false);
    }
    ~CinePause() { clock_.putEnabled(wasPlaying_); }
    CinePause(const CinePause&) = delete;
    CinePause& operator=(const CinePause&) = delete;

  private:
    TimerControl& clock_;
    bool wasPlaying_;
};

}  // namespace cinedisc
