#pragma once

#include <algorithm>
#include <cmath>
#include <deque>

namespace cinedisc {

/// Keeps a clock of whole milliseconds at a rate that they do not divide: what one tick is too early or late,
/// the next ones make good. Times are milliseconds of any steady clock.
class CinePace {
  public:
    /// The period to set at a tick, at `now`, towards the next. Behind a tick that is a whole period late,
    /// time starts anew: there are no bursts.
    int next(double now, double framesPerSecond) {
        const double period = 1000 / framesPerSecond;
        due_ = std::abs(now - due_) < period ? due_ + period : now + period;
        return std::max(1, static_cast<int>(std::lround(due_ - now)));
    }

  private:
    double due_ = -1e9;
};

/// Frames per second that were drawn lately.
class RateMeter {
  public:
    void drawn(double now) {
        times_.push_back(now);
        forget(now);
    }
    /// 0 when fewer than two frames were drawn within the last two seconds.
    double rate(double now) {
        forget(now);
        return times_.size() < 2 ? 0 : 1000 * double(times_.size() - 1) / (times_.back() - times_.front());
    }

  private:
    void forget(double now) {
        constexpr double memory = 2000;
        while (!times_.empty() && now - times_.front() > memory) times_.pop_front();
    }

    std::deque<double> times_;
};

}  // namespace cinedisc
