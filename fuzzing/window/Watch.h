#pragma once

#include <QWidget>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace cinedisc::fuzzing::window {

/// Counts what the window's thread does: the longest time that it works at one thing, and what that was.
class Watch {
  public:
    /// What no single piece of work may take: of the processor, and in all, as others use the machine.
    static constexpr std::chrono::milliseconds mostWork{2000}, mostTime{10000};
    /// Within that a file must have given its picture or the reason why there is none.
    static constexpr std::chrono::milliseconds mostWait{60000};

    enum class Times { Judged, Ignored };
    explicit Watch(Times times = Times::Judged) : times_(times) {}

    using Seconds = std::chrono::duration<double>;
    struct Work {
        const char* what = "nothing";
        Seconds processor{0}, time{0};
    };

    void work(const char* what, const std::function<void()>& act);
    /// Handles events until it is so; whether it came to be so in time.
    bool await(const char* what, const std::function<bool()>& isSo);

    const Work& longest() const { return longest_; }
    /// What took too long, if anything did.
    const std::optional<std::string>& fault() const { return fault_; }
    void reportFault(const std::string& words);

  private:
    Times times_;
    Work longest_;
    std::optional<std::string> fault_;
};

/// Most memory that the program has had since the last call, in bytes; 0 where the system does not tell.
std::uint64_t peakMemory();

}  // namespace cinedisc::fuzzing::window
