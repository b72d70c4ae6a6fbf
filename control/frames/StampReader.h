#pragma once

#include "platform/io/FileStamp.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace cinedisc {

/// Asks what file lies at a path, in a thread of its own: of an open file the system knows it, whatever the
/// disc is doing, but a disc that has been changed may keep it waiting. Asked from one thread.
class StampReader {
  public:
    using Stamp = std::function<FileStamp(const std::string& path)>;

    explicit StampReader(Stamp stamp) : stamp_(std::move(stamp)) {}
    ~StampReader();

    /// Empty when there is no answer within the patience.
    std::optional<FileStamp> within(std::chrono::milliseconds patience, const std::string& path);

  private:
    void loop();

    const Stamp stamp_;
    std::mutex mutex_;
    std::condition_variable asked_, answered_;
    bool stopping_ = false;
    unsigned question_ = 0;  ///< number of the last one
    unsigned answer_ = 0;    ///< number of the one that was answered last
    std::string path_;
    FileStamp stamped_;
    std::thread thread_;
};

}  // namespace cinedisc
