#include "platform/process/linux/ForkServer.h"

#include "platform/process/linux/ForkedProcess.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace cinedisc {

namespace {

using std::chrono_literals::operator""s;

/// What the server is told: to start a process, with its socket and memory, or to end one.
struct Order {
    std::size_t memorySize = 0;
    pid_t toBeEnded = 0;
};

constexpr std::size_t handleCount = 2;

struct Message {
    explicit Message(Order& order) : part{&order, sizeof order} {
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = handles;
        header.msg_controllen = sizeof handles;
    }
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

    iovec part;
    alignas(cmsghdr) char handles[CMSG_SPACE(handleCount * sizeof(int))] = {};  ///< that come with the order
    msghdr header{};
};

template <typename Call>
auto untilDone(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// Closes all handles but one or two, which become 3 and 4: what a library prints reaches nobody.
void keepOnly(std::initializer_list<int> handles) {
    int next = 3;
    for (const int handle : handles) {
        // Out of the way of those that are still to be moved.
        const int aside = fcntl(handle, F_DUPFD, 3 + static_cast<int>(handles.size()));
        dup2(aside, next++);
        close(aside);
    }
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(standard);
    const auto first = static_cast<unsigned>(next);
    if (close_range(first, ~0u, 0) == 0) return;
    for (long handle = next, end = sysconf(_SC_OPEN_MAX); handle < end; ++handle)
        close(static_cast<int>(handle));
}

/// The server's side.
class Forks {
  public:
    Forks(int socket, ConfinedWork work) : socket_(socket), work_(work) {}

    void serve() {
        for (;;) {
            Order order;
            Message message(order);
            const auto got = untilDone([&] { return recvmsg(socket_, &message.header, MSG_CMSG_CLOEXEC); });
            if (got != sizeof order) break;
            const pid_t reply = order.toBeEnded > 0 ? end(order.toBeEnded) : start(order, message);
            if (send(socket_, &reply, sizeof reply, MSG_NOSIGNAL) != sizeof reply) break;
        }
        for (const pid_t process : processes_) kill(process, SIGKILL);
    }

  private:
    pid_t start(const Order& order, const Message& message) {
        const cmsghdr* const control = CMSG_FIRSTHDR(&message.header);
        if (!control || control->cmsg_len != CMSG_LEN(handleCount * sizeof(int))) return -1;
        int handles[handleCount];
        std::memcpy(handles, CMSG_DATA(control), sizeof handles);
        const pid_t process = fork();
        if (process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            keepOnly({handles[0], handles[1]});
            ForkedProcess::work(3, 4, order.memorySize, work_);
        }
        for (const int handle : handles) close(handle);
        if (process > 0) processes_.push_back(process);
        return process;
    }

    /// Its number is nobody else's before this waits for it, even if it died long ago.
    pid_t end(pid_t process) {
        if (std::erase(processes_, process) == 0) return 0;
        kill(process, SIGKILL);
        return untilDone([&] { return waitpid(process, nullptr, 0); });
    }

    int socket_;
    ConfinedWork work_;
    std::vector<pid_t> processes_;
};

/// Memory to be shared, of a size that nobody can change. -1 when there is none.
int sharedMemory(std::size_t size) {
    const int memory = memfd_create("frames", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (memory < 0) return -1;
    if (ftruncate(memory, static_cast<off_t>(size)) == 0 &&
        fcntl(memory, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) == 0)
        return memory;
    close(memory);
    return -1;
}

}  // namespace

std::unique_ptr<ConfinedProcesses> ConfinedProcesses::prepare(ConfinedWork work, int, char**) {
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) != 0) return nullptr;
    const pid_t process = fork();
    if (process == 0) ForkServer::serve(sockets[1], work);
    close(sockets[1]);
    if (process > 0) return std::make_unique<ForkServer>(sockets[0], process);
    close(sockets[0]);
    return nullptr;
}

ForkServer::~ForkServer() {
    close(socket_);
    untilDone([this] { return waitpid(process_, nullptr, 0); });
}

void ForkServer::serve(int socket, ConfinedWork work) {
    keepOnly({socket});
    Forks(3, work).serve();
    _exit(0);
}

std::unique_ptr<ConfinedProcess> ForkServer::start(std::size_t memorySize) {
    int sockets[2] = {-1, -1};
    const int memory = sharedMemory(memorySize);
    void* const mapped =
        memory < 0 ? MAP_FAILED : mmap(nullptr, memorySize, PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
    pid_t process = -1;
    if (mapped != MAP_FAILED && socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) == 0)
        process = startWith(memorySize, sockets[1], memory);
    if (memory >= 0) close(memory);
    if (sockets[1] >= 0) close(sockets[1]);
    if (process > 0) {
        auto started = std::make_unique<ForkedProcess>(
            *this, process, sockets[0], std::span(static_cast<std::byte*>(mapped), memorySize));
        if (started->await(10s) == ConfinedProcess::Outcome::Done) return started;
        return nullptr;
    }
    if (sockets[0] >= 0) close(sockets[0]);
    if (mapped != MAP_FAILED) munmap(mapped, memorySize);
    return nullptr;
}

pid_t ForkServer::startWith(std::size_t memorySize, int socket, int memory) {
    Order order{memorySize};
    Message message(order);
    cmsghdr* const control = CMSG_FIRSTHDR(&message.header);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    const int handles[handleCount] = {socket, memory};
    control->cmsg_len = CMSG_LEN(sizeof handles);
    std::memcpy(CMSG_DATA(control), handles, sizeof handles);

    const std::lock_guard lock(mutex_);
    pid_t reply = -1;
    if (sendmsg(socket_, &message.header, MSG_NOSIGNAL) != sizeof order) return -1;
    if (untilDone([&] { return recv(socket_, &reply, sizeof reply, 0); }) != sizeof reply) return -1;
    return reply;
}

void ForkServer::end(pid_t process) {
    Order order{0, process};
    const std::lock_guard lock(mutex_);
    pid_t reply;
    if (send(socket_, &order, sizeof order, MSG_NOSIGNAL) == sizeof order)
        untilDone([&] { return recv(socket_, &reply, sizeof reply, 0); });
}

}  // namespace cinedisc
