// Sanitizers need system calls that are refused here; on Windows this program is not one that starts anew.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#include "platform/io/RandomAccessFile.h"
#include "platform/process/ConfinedProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace cinedisc {
namespace {

using namespace std::chrono_literals;

enum class Wish : unsigned char { Nothing, Misuse, Threads, Crash, End, Hang, Grow };

/// Names, in `memory`, what could be done although it is forbidden.
void misuse(std::span<std::byte> memory) {
    std::string done;
    const auto tried = [&](const char* what, bool succeeded) { done += succeeded ? what : ""; };
    tried("reading ", open("/etc/passwd", O_RDONLY) >= 0);
    tried("looking ", access("/", F_OK) == 0);
    tried("writing ", open("/tmp/cinedisc-escaped", O_WRONLY | O_CREAT, 0600) >= 0);
    tried("network ", socket(AF_INET, SOCK_STREAM, 0) >= 0 || socket(AF_UNIX, SOCK_STREAM, 0) >= 0);
    tried("process ", fork() >= 0);
    tried("signal ", kill(getppid(), 0) == 0 || kill(1, 0) == 0);
    tried("code ",
          mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED);
    tried("printing ", write(STDOUT_FILENO, "!", 1) == 1 || write(STDERR_FILENO, "!", 1) == 1);
    std::memcpy(memory.data() + 1, done.c_str(), done.size() + 1);
}

void obey(std::span<std::byte> memory) {
    switch (static_cast<Wish>(memory[0])) {
        case Wish::Misuse:
            return misuse(memory);
        case Wish::Threads:
            std::thread([&] { memory.back() = std::byte{7}; }).join();
            break;
        case Wish::Crash:
            std::abort();
        case Wish::End:
            _exit(0);
        case Wish::Hang:
            for (volatile bool forever = true; forever;) continue;
            break;
        case Wish::Grow:
            memory[1] = std::byte{std::malloc(std::size_t{1} << 30) != nullptr};
            break;
        case Wish::Nothing:
            break;
    }
}

/// How many handles a process has, and whether it shares memory with another.
auto held(const std::string& process = "self") {
    std::ifstream stream("/proc/" + process + "/maps");
    const std::string maps(std::istreambuf_iterator<char>(stream), {});
    return std::pair(std::distance(std::filesystem::directory_iterator("/proc/" + process + "/fd"), {}),
                     maps.find("memfd:") != std::string::npos);
}

/// The processes that a process has started.
std::vector<std::string> startedBy(const std::string& process) {
    std::ifstream stream("/proc/" + process + "/task/" + process + "/children");
    return {std::istream_iterator<std::string>(stream), {}};
}

TEST(ConfinedProcessTest, ComputesAndDoesNothingElseAndItsEndIsSeen) {
    using Outcome = ConfinedProcess::Outcome;
    const auto before = held();
    const auto self = std::to_string(getpid());
    {
        const auto processes = ConfinedProcesses::prepare(obey, 0, nullptr);
        ASSERT_TRUE(processes);
        const auto ask = [](ConfinedProcess& process, Wish wish, std::chrono::milliseconds most = 1min) {
            process.memory()[0] = static_cast<std::byte>(wish);
            return process.ask(most);
        };
        const auto lasting = processes->start(10'000);
        ASSERT_TRUE(lasting);
        ASSERT_EQ(lasting->memory().size(), 10'000u);
        const auto server = startedBy(self).at(0);
        const auto heldByServer = held(server);
        std::ifstream stream("/proc/" + startedBy(server).at(0) + "/oom_score_adj");
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "1000\n") << "it is to end first";
        EXPECT_EQ(ask(*lasting, Wish::Misuse), Outcome::Done);
        EXPECT_STREQ(reinterpret_cast<const char*>(lasting->memory().data() + 1), "");
        EXPECT_EQ(ask(*lasting, Wish::Threads), Outcome::Done);
        EXPECT_EQ(lasting->memory().back(), std::byte{7});
        EXPECT_EQ(ask(*lasting, Wish::Grow), Outcome::Done);
        EXPECT_EQ(lasting->memory()[1], std::byte{0});
        for (const auto& [wish, outcome] : {std::pair(Wish::Crash, Outcome::Died),
                                            {Wish::End, Outcome::Died},
                                            {Wish::Hang, Outcome::TookTooLong}}) {
            const auto process = processes->start(4096);
            ASSERT_TRUE(process);
            EXPECT_EQ(process->memory()[1], std::byte{0});
            EXPECT_EQ(ask(*process, wish, wish == Wish::Hang ? 50ms : 60'000ms), outcome);
        }
        EXPECT_EQ(ask(*lasting, Wish::Nothing), Outcome::Done);
        EXPECT_EQ(startedBy(server).size(), 1u) << "the others are ended";
        EXPECT_EQ(held(server), heldByServer);
    }
    EXPECT_EQ(RandomAccessFile::open("/", nullptr), nullptr);
    EXPECT_EQ(held(), before);
    EXPECT_TRUE(startedBy(self).empty());
}

}  // namespace
}  // namespace cinedisc
#endif
