#pragma once

#include "tests/control/FakeDicomFile.h"

#include <QString>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace cinedisc::test {

/// A disc, and decoders, whose every step is written down and waits while a test holds its kind: "open /a",
/// "read /a 3", "decode /a 3".
class HeldDisc {
  public:
    /// Steps that begin so wait, "" all, until they are let go.
    void hold(const std::string& kind) {
        const std::lock_guard lock(mutex_);
        held_.insert(kind);
    }
    void letGo(const std::optional<std::string>& kind = std::nullopt) {
        const std::lock_guard lock(mutex_);
        std::erase_if(held_, [&](const auto& held) { return !kind || held == *kind; });
        changed_.notify_all();
    }
    void pass(const std::string& step) {
        std::unique_lock lock(mutex_);
        byWindow_ |= std::this_thread::get_id() == window_;
        steps_.push_back(step);
        changed_.notify_all();
        changed_.wait(lock, [&] {
            return std::ranges::none_of(held_, [&](const auto& kind) { return step.starts_with(kind); });
        });
    }
    /// Waits until a step has begun.
    bool reached(const std::string& step) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20),
                                 [&] { return std::ranges::count(steps_, step) > 0; });
    }
    std::vector<std::string> steps(const std::string& kind = "read") {
        const std::lock_guard lock(mutex_);
        std::vector<std::string> found;
        std::ranges::copy_if(steps_, std::back_inserter(found),
                             [&](const auto& step) { return step.starts_with(kind); });
        return found;
    }
    /// Whether the thread that made the disc, the window's, had to wait for it.
    bool heldTheWindow() {
        const std::lock_guard lock(mutex_);
        return byWindow_;
    }

    /// A run on it; all pixels of a frame, counted from 0, are `first` and its number.
    std::shared_ptr<FakeDicomFile> run(const std::string& name, int frames, int first = 1, int size = 16) {
        auto file = greyRun(size, size, frames, [first](int, int, int f) { return first + f; });
        const auto step = [this, name](const char* kind, int frame) {
            pass(kind + (" " + name) + " " + std::to_string(frame));
        };
        file->reading = [step](int frame) { step("read", frame); };
        file->picture = [step, picture = file->picture](int frame) {
            step("decode", frame);
            return picture(frame);
        };
        return file;
    }

  private:
    const std::thread::id window_ = std::this_thread::get_id();
    std::mutex mutex_;
    std::condition_variable changed_;
    std::set<std::string> held_;
    std::vector<std::string> steps_;
    bool byWindow_ = false;
};

}  // namespace cinedisc::test
