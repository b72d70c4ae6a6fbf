#include "discmaker/ParallelFor.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace cinedisc::discmaker {

unsigned processorCount() { return std::max(1u, std::thread::hardware_concurrency()); }

void parallelFor(std::size_t count, unsigned workers, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next{0};
    std::exception_ptr failure;
    std::mutex failureLock;
    const auto run = [&] {
        for (std::size_t i = next++; i < count; i = next++) {
            try {
                work(i);
            } catch (...) {
                const std::lock_guard guard(failureLock);
                if (!failure) failure = std::current_exception();
                next = count;
            }
        }
    };
    {
        std::vector<std::jthread> threads;
        for (unsigned i = 1; i < workers && i < count; ++i) threads.emplace_back(run);
        run();
    }
    if (failure) std::rethrow_exception(failure);
}

}  // namespace cinedisc::discmaker
