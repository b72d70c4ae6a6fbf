#pragma once

#include "control/frames/FrameRun.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace cinedisc {

/// Work on the disc whose end others wait for. The reader runs it once. Safe to call from any thread.
class Errand {
  public:
    using Clock = std::chrono::steady_clock;

    virtual ~Errand() = default;
    /// Never throws: whoever waits must hear of the end.
    void run();
    bool isDone() const;
    /// False when it was not done by the deadline.
    bool waitUntil(Clock::time_point deadline) const;
    /// A run whose first frame will be looked at, null for none. Only valid after the errand is done.
    virtual std::shared_ptr<const FrameRun> toBeLookedAt() const { return nullptr; }

  protected:
    virtual void work() = 0;
    /// Tells the views that did not wait for it that it is done.
    virtual void tell() {}

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable ended_;
    bool done_ = false;
};

}  // namespace cinedisc
