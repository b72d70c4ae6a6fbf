#pragma once

#include "platform/process/linux/ForkServer.h"

namespace cinedisc {

/// A confined process, seen from the program. One byte on the socket asks, and one tells that it is done.
class ForkedProcess : public ConfinedProcess {
  public:
    /// Takes over the socket and the mapping.
    ForkedProcess(ForkServer& server, pid_t process, int socket, std::span<std::byte> memory)
        : server_(server), process_(process), socket_(socket), memory_(memory) {}
    ~ForkedProcess() override;

    /// Works as the process: confines it, tells so, and does its work until the other end is gone.
    [[noreturn]] static void work(int socket, int memory, std::size_t memorySize, ConfinedWork work);

    std::span<std::byte> memory() override { return memory_; }
    Outcome ask(std::chrono::milliseconds most) override;
    /// Waits for the byte.
    Outcome await(std::chrono::milliseconds most);

  private:
    ForkServer& server_;
    pid_t process_;
    int socket_;
    std::span<std::byte> memory_;
};

}  // namespace cinedisc
