#include "control/frames/Errand.h"

namespace cinedisc {

void Errand::run() {
    if (isDone()) return;
    try {
        work();
    } catch (...) {
        // The result keeps its initial value, which stands for a failure.
    }
    {
        const std::lock_guard lock(mutex_);
        done_ = true;
        ended_.notify_all();
    }
    tell();
}

bool Errand::isDone() const {
    const std::lock_guard lock(mutex_);
    return done_;
}

bool Errand::waitUntil(Clock::time_point deadline) const {
    std::unique_lock lock(mutex_);
    return ended_.wait_until(lock, deadline, [this] { return done_; });
}

}  // namespace cinedisc
