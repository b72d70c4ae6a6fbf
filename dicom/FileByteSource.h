#pragma once

#include "dicom/ByteSource.h"
#include "dicom/Result.h"
#include "platform/io/RandomAccessFile.h"

#include <memory>
#include <string>

namespace cinedisc::dicom {

/// A regular file as bytes, read at offsets without caching.
class FileByteSource : public ByteSource {
  public:
    /// Opens for reading; a missing, unreadable or not regular file is CannotRead, in words for the notice.
    static Result<std::shared_ptr<const ByteSource>> open(const std::string& path);

    std::uint64_t size() const override { return file_->size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        return file_->readAt(offset, into);
    }

  private:
    explicit FileByteSource(std::unique_ptr<RandomAccessFile> file) : file_(std::move(file)) {}

    std::unique_ptr<RandomAccessFile> file_;
};

}  // namespace cinedisc::dicom
