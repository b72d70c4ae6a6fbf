#pragma once

#include <cstdint>
#include <mutex>
#include <string>

namespace cinedisc::bench {

/// A drive with one disc in it: it gives 3.6 MB/s to one reader at a time and takes 100 ms for every jump.
class SlowDrive {
  public:
    static SlowDrive& shared();

    /// Takes as long as reading these bytes of a file takes.
    void read(const std::string& file, std::uint64_t offset, std::uint64_t length);
    int jumps() const;

  private:
    mutable std::mutex mutex_;
    std::string file_;  ///< read last, up to end_
    std::uint64_t end_ = 0;
    int jumps_ = 0;
};

}  // namespace cinedisc::bench
