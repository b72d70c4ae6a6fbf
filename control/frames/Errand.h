#pragma once

#include "control/frames/FrameRun.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace cinedisc {

/// Something that has to be got from the disc and that others wait for: the reader runs it once. Safe to call
/// from any thread.
class Errand {
  public:
    using Clock = std::chrono::steady_clock;

    virtual ~Errand() = default;
    /// Never throws: whoever waits must hear of the end.
    void run();
    bool isDone() const;
    /// False when it was not done by the deadline.
    bool waitUntil(Clock::time_point deadline) const;
    /// Once it is done: a run whose first frame will be looked at, null for none.
    virtual std::shared_ptr<const FrameRun> toBeLookedAt() const { return nullptr; }

  protected:
    virtual void work() = 0;
    /// Tells those who did not wait for it.
    virtual void tell() {}

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable ended_;
    bool done_ = false;
};

}  // namespace cinedisc
