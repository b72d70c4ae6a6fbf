// Takes the place of dicom/FileByteSource.cpp: every read of a file is told to the program.
#include "bench/files/ReadWatcher.h"
#include "dicom/FileByteSource.h"

namespace cinedisc::dicom {

namespace {

class WatchedSource : public ByteSource {
  public:
    WatchedSource(std::unique_ptr<RandomAccessFile> file, std::string path)
        : file_(std::move(file)), path_(std::move(path)) {}

    std::uint64_t size() const override { return file_->size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        const std::size_t got = file_->readAt(offset, into);
        bench::onRead(path_, offset, got);
        return got;
    }

  private:
    std::unique_ptr<RandomAccessFile> file_;
    std::string path_;
};

}  // namespace

Result<std::shared_ptr<const ByteSource>> FileByteSource::open(const std::string& path) {
    auto file = RandomAccessFile::open(path);
    if (file)
        return std::shared_ptr<const ByteSource>(std::make_shared<WatchedSource>(std::move(file), path));
    DecodeError error;
    error.kind = DecodeError::Kind::CannotRead;
    return error;
}

}  // namespace cinedisc::dicom
