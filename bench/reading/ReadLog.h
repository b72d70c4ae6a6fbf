#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace cinedisc::bench {

/// What the whole process has read of its DICOM files. Safe to call from any thread.
class ReadLog {
  public:
    static ReadLog& shared();

    void add(const std::string& path, std::uint64_t offset, std::uint64_t length);
    /// Prints files, reads, bytes, bytes read more than once and steps backwards, one "key=value" a line.
    void report() const;
    std::size_t reads() const;

  private:
    struct Read {
        std::uint64_t offset, length;
    };
    mutable std::mutex mutex_;
    std::map<std::string, std::vector<Read>> files_;
};

}  // namespace cinedisc::bench
