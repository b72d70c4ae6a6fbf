#include "fuzzing/window/Watch.h"

#include <QCoreApplication>
#include <QThread>

#include <ctime>
#include <fstream>

namespace cinedisc::fuzzing::window {

namespace {

using Clock = std::chrono::steady_clock;

Watch::Seconds ofThisThread() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace

void Watch::work(const char* what, const std::function<void()>& act) {
    const auto began = Clock::now();
    const auto before = ofThisThread();
    act();
    const Work done{what, ofThisThread() - before, Clock::now() - began};
    if (done.processor > longest_.processor) longest_ = done;
    if (times_ == Times::Judged && (done.processor > mostWork || done.time > mostTime))
        reportFault(std::string(what) + " took " + std::to_string(done.processor.count()) +
                    " s of the processor, " + std::to_string(done.time.count()) + " s in all");
}

bool Watch::await(const char* what, const std::function<bool()>& isSo) {
    for (const auto began = Clock::now(); Clock::now() - began < mostWait; QThread::usleep(200)) {
        work("events", [] { QCoreApplication::processEvents(); });
        if (isSo()) return true;
    }
    reportFault(std::string("waited in vain for ") + what);
    return false;
}

void Watch::reportFault(const std::string& words) {
    if (!fault_) fault_ = words;
}

std::uint64_t peakMemory() {
    std::ifstream status("/proc/self/status");
    std::uint64_t kilobytes = 0;
    for (std::string word; status >> word;)
        if (word == "VmHWM:") status >> kilobytes;
    std::ofstream("/proc/self/clear_refs") << 5;
    return kilobytes * 1024;
}

}  // namespace cinedisc::fuzzing::window
