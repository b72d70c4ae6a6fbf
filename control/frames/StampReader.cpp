#include "control/frames/StampReader.h"

namespace cinedisc {

StampReader::~StampReader() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    asked_.notify_all();
    if (thread_.joinable()) thread_.join();
}

std::optional<FileStamp> StampReader::within(std::chrono::milliseconds patience, const std::string& path) {
    std::unique_lock lock(mutex_);
    if (!thread_.joinable()) thread_ = std::thread([this] { loop(); });
    if (answer_ != question_) return std::nullopt;  // still at one that was given up
    path_ = path;
    const unsigned question = ++question_;
    asked_.notify_one();
    const bool answered = answered_.wait_for(lock, patience, [&] { return answer_ == question; });
    return answered ? std::optional(stamped_) : std::nullopt;
}

void StampReader::loop() {
    std::unique_lock lock(mutex_);
    for (;;) {
        asked_.wait(lock, [this] { return stopping_ || answer_ != question_; });
        if (stopping_) return;
        const unsigned question = question_;
        const std::string path = path_;
        lock.unlock();
        const FileStamp stamp = stamp_(path);
        lock.lock();
        stamped_ = stamp;
        answer_ = question;
        answered_.notify_all();
    }
}

}  // namespace cinedisc
