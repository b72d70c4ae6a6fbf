#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace cinedisc {

/// A regular file read at offsets, without Qt. Reads may come from several threads at once.
class RandomAccessFile {
  public:
    enum class OpenError { None, Missing, NotRegular, NoAccess };

    /// Opens for reading. Never waits on a pipe or device: anything but a regular file is refused. `path` is
    /// in UTF-8. On failure the result is null and `error` says why.
    static std::unique_ptr<RandomAccessFile> open(const std::string& path, OpenError* error = nullptr);
    ~RandomAccessFile();
    RandomAccessFile(const RandomAccessFile&) = delete;
    RandomAccessFile& operator=(const RandomAccessFile&) = delete;

    std::uint64_t size() const { return size_; }
    /// Reads up to `into.size()` bytes; returns how many came, fewer only at the end or on an error.
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const;

  private:
    using Handle = std::intptr_t;  ///< whatever the system names an open file with

    RandomAccessFile(Handle handle, std::uint64_t size) : handle_(handle), size_(size) {}

    Handle handle_;
    std::uint64_t size_;
};

}  // namespace cinedisc
