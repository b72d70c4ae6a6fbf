#pragma once

#include "platform/process/ConfinedProcess.h"
#include "platform/process/windows/Handle.h"

namespace cinedisc {

/// A view of shared memory, closed with its scope.
class View {
  public:
    View(HANDLE mapping, std::size_t size)
        : start_(MapViewOfFile(mapping, FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, size)), size_(size) {}
    ~View() {
        if (start_) UnmapViewOfFile(start_);
    }
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    bool isThere() const { return start_ != nullptr; }
    std::span<std::byte> bytes() const { return {static_cast<std::byte*>(start_), size_}; }

  private:
    void* start_;
    std::size_t size_;
};

/// This program started anew as a confined process. One event asks it, and one tells that it is done.
class StartedProcess : public ConfinedProcess {
  public:
    /// Null when the system refuses it.
    static std::unique_ptr<StartedProcess> start(std::size_t memorySize);
    ~StartedProcess() override;

    std::span<std::byte> memory() override { return view_.bytes(); }
    Outcome ask(std::chrono::milliseconds most) override;

  private:
    StartedProcess(Handle mapping, std::size_t memorySize);
    bool startWith(std::size_t memorySize);
    Outcome await(std::chrono::milliseconds most);

    Handle mapping_, question_, reply_, job_, process_;
    View view_;
};

}  // namespace cinedisc
