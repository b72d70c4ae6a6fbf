#include "dicom/FileByteSource.h"

namespace cinedisc::dicom {

Result<std::shared_ptr<const ByteSource>> FileByteSource::open(const std::string& path) {
    using OpenError = RandomAccessFile::OpenError;
    OpenError why = OpenError::None;
    auto file = RandomAccessFile::open(path, &why);
    if (file) return std::shared_ptr<const ByteSource>(new FileByteSource(std::move(file)));
    DecodeError error;
    error.kind = DecodeError::Kind::CannotRead;
    if (why == OpenError::Missing) error.reason = DecodeError::Reason::Missing;
    if (why == OpenError::NotRegular) error.reason = DecodeError::Reason::NotRegular;
    return error;
}

}  // namespace cinedisc::dicom
