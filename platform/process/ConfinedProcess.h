#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <span>

namespace cinedisc {

/// What a confined process does whenever it is asked: it finds what is asked in `memory`, and leaves what it
/// found out there.
using ConfinedWork = void (*)(std::span<std::byte> memory);

/// A process that may do nothing but compute: it can neither open a file nor reach a network, a window or
/// another process, and its memory is limited. It ends with this object or with the program. Used by one
/// thread at a time.
class ConfinedProcess {
  public:
    enum class Outcome { Done, Died, TookTooLong };

    virtual ~ConfinedProcess() = default;
    ConfinedProcess(const ConfinedProcess&) = delete;
    ConfinedProcess& operator=(const ConfinedProcess&) = delete;

    /// Shared with the process, which may change it at any time. All zero at first.
    virtual std::span<std::byte> memory() = 0;
    /// Has the process do its work once. After any outcome but Done it is gone.
    virtual Outcome ask(std::chrono::milliseconds most) = 0;

  protected:
    ConfinedProcess() = default;
};

/// Where confined processes come from, which it outlives. May be used by several threads at a time.
class ConfinedProcesses {
  public:
    virtual ~ConfinedProcesses() = default;
    ConfinedProcesses(const ConfinedProcesses&) = delete;
    ConfinedProcesses& operator=(const ConfinedProcesses&) = delete;

    /// To be called before anything else in main, with its arguments: before there are other threads, open
    /// files or windows. Where confined processes are this program started anew, it does their work and does
    /// not return in them. Null where the system has no such processes.
    static std::unique_ptr<ConfinedProcesses> prepare(ConfinedWork work, int argumentCount, char** arguments);

    /// A process with that much shared memory, in bytes; null when the system refuses it.
    virtual std::unique_ptr<ConfinedProcess> start(std::size_t memorySize) = 0;

  protected:
    ConfinedProcesses() = default;
};

}  // namespace cinedisc
