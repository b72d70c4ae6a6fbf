// Takes the place of dicom/FileByteSource.cpp: every file lies in the slow drive.
#include "bench/slow/SlowDrive.h"
#include "dicom/FileByteSource.h"

namespace cinedisc::dicom {

namespace {

class SlowSource : public ByteSource {
  public:
    explicit SlowSource(std::unique_ptr<RandomAccessFile> file) : file_(std::move(file)) {}

    std::uint64_t size() const override { return file_->size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        const std::size_t got = file_->readAt(offset, into);
        bench::SlowDrive::shared().read(this, offset, got);
        return got;
    }

  private:
    std::unique_ptr<RandomAccessFile> file_;
};

}  // namespace

Result<std::shared_ptr<const ByteSource>> FileByteSource::open(const std::string& path) {
    auto file = RandomAccessFile::open(path);
    if (file) return std::shared_ptr<const ByteSource>(std::make_shared<SlowSource>(std::move(file)));
    DecodeError error;
    error.kind = DecodeError::Kind::CannotRead;
    error.message = "The file cannot be read";
    return error;
}

}  // namespace cinedisc::dicom
