#pragma once

#include "platform/process/ConfinedProcess.h"

#include <mutex>
#include <sys/types.h>

namespace cinedisc {

/// A process that forks confined ones from itself. It is itself forked when the program starts, while that is
/// small and has one thread only; so there is nothing to be found or loaded anew, and a confined process is
/// there within a millisecond, even when the disc is not any more. It never sees what the others work on.
class ForkServer : public ConfinedProcesses {
  public:
    /// `socket` is this program's end of a pair.
    ForkServer(int socket, pid_t process) : socket_(socket), process_(process) {}
    ~ForkServer() override;

    /// Works as the server, on the other end, until the program is gone.
    [[noreturn]] static void serve(int socket, ConfinedWork work);

    std::unique_ptr<ConfinedProcess> start(std::size_t memorySize) override;
    /// Ends a process that was started here, and waits until it is gone.
    void end(pid_t process);

  private:
    pid_t startWith(std::size_t memorySize, int socket, int memory);

    std::mutex mutex_;
    int socket_;
    pid_t process_;
};

}  // namespace cinedisc
