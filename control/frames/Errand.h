#pragma once

#include <chrono>
#include <condition_variable>
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

  protected:
    virtual void work() = 0;
    /// What the reader does next, when nobody waits for this any more.
    virtual void afterwards() {}

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable ended_;
    bool done_ = false;
};

}  // namespace cinedisc
