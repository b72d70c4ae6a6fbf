#include "bench/reading/ReadLog.h"

#include "bench/files/ReadWatcher.h"

#include <algorithm>
#include <cstdio>

namespace cinedisc::bench {

ReadLog& ReadLog::shared() {
    static ReadLog log;
    return log;
}

void ReadLog::add(const std::string& path, std::uint64_t offset, std::uint64_t length) {
    const std::lock_guard lock(mutex_);
    files_[path].push_back({offset, length});
}

std::size_t ReadLog::reads() const {
    const std::lock_guard lock(mutex_);
    std::size_t sum = 0;
    for (const auto& [path, reads] : files_) sum += reads.size();
    return sum;
}

void ReadLog::report() const {
    const std::lock_guard lock(mutex_);
    std::uint64_t count = 0, bytes = 0, twice = 0, backwards = 0;
    for (auto [path, reads] : files_) {
        std::uint64_t end = 0;
        for (const Read& read : reads) {
            backwards += read.offset < end;
            end = read.offset + read.length;
            bytes += read.length;
        }
        count += reads.size();
        std::ranges::sort(reads, {}, &Read::offset);
        end = 0;
        for (const Read& read : reads) {
            if (read.offset < end) twice += std::min(end, read.offset + read.length) - read.offset;
            end = std::max(end, read.offset + read.length);
        }
    }
    std::printf("files=%zu\nreads=%llu\nbytes=%llu\nbytes_read_again=%llu\nsteps_backwards=%llu\n",
                files_.size(), static_cast<unsigned long long>(count), static_cast<unsigned long long>(bytes),
                static_cast<unsigned long long>(twice), static_cast<unsigned long long>(backwards));
}

void onRead(const std::string& path, std::uint64_t offset, std::uint64_t length) {
    ReadLog::shared().add(path, offset, length);
}

}  // namespace cinedisc::bench
