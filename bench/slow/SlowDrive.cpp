#include "bench/slow/SlowDrive.h"

#include "bench/files/ReadWatcher.h"

#include <chrono>
#include <thread>

namespace cinedisc::bench {

SlowDrive& SlowDrive::shared() {
    static SlowDrive drive;
    return drive;
}

void SlowDrive::read(const std::string& file, std::uint64_t offset, std::uint64_t length) {
    constexpr double bytesPerSecond = 3.6e6, secondsToJump = 0.1;
    const std::lock_guard lock(mutex_);
    double seconds = static_cast<double>(length) / bytesPerSecond;
    if (file != file_ || offset != end_) {
        seconds += secondsToJump;
        ++jumps_;
    }
    file_ = file;
    end_ = offset + length;
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

int SlowDrive::jumps() const {
    const std::lock_guard lock(mutex_);
    return jumps_;
}

void onRead(const std::string& path, std::uint64_t offset, std::uint64_t length) {
    SlowDrive::shared().read(path, offset, length);
}

}  // namespace cinedisc::bench
