#include "platform/process/linux/ForkedProcess.h"

#include "platform/process/linux/Confinement.h"

#include <cerrno>
#include <malloc.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace cinedisc {

namespace {

bool sendByte(int socket) {
    const char byte = 0;
    return send(socket, &byte, 1, MSG_NOSIGNAL) == 1;
}

/// What one frame gave back is kept for the next, which is as large.
void keepMemory() {
#ifdef __GLIBC__
    constexpr int kept = 32 << 20;
    mallopt(M_MMAP_THRESHOLD, kept);
    mallopt(M_TRIM_THRESHOLD, kept);
#endif
}

}  // namespace

ForkedProcess::~ForkedProcess() {
    close(socket_);
    munmap(memory_.data(), memory_.size());
    server_.end(process_);
}

ConfinedProcess::Outcome ForkedProcess::ask(std::chrono::milliseconds most) {
    return sendByte(socket_) ? await(most) : Outcome::Died;
}

ConfinedProcess::Outcome ForkedProcess::await(std::chrono::milliseconds most) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + most;
    for (auto left = most; left.count() >= 0;
         left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now())) {
        pollfd waiting{socket_, POLLIN, 0};
        const int ready = poll(&waiting, 1, static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) continue;
        if (ready < 0) return Outcome::Died;
        char byte;
        if (ready > 0) return read(socket_, &byte, 1) == 1 ? Outcome::Done : Outcome::Died;
        if (left.count() == 0) break;
    }
    return Outcome::TookTooLong;
}

void ForkedProcess::work(int socket, int memory, std::size_t memorySize, ConfinedWork work) {
    void* const mapped = mmap(nullptr, memorySize, PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
    keepMemory();
    if (mapped == MAP_FAILED || close(memory) != 0 || !confineThisProcess()) _exit(1);
    char byte = 0;
    while (write(socket, &byte, 1) == 1 && read(socket, &byte, 1) == 1)
        work({static_cast<std::byte*>(mapped), memorySize});
    _exit(0);
}

}  // namespace cinedisc
