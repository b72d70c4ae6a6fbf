#include "dicom/FileByteSource.h"

namespace cinedisc::dicom {

Result<std::shared_ptr<const ByteSource>> FileByteSource::open(const std::string& path) {
    using OpenError = RandomAccessFile::OpenError;
    OpenError why = OpenError::None;
    auto file = RandomAccessFile::open(path, &why);
    if (file) return std::shared_ptr<const ByteSource>(new FileByteSource(std::move(file)));
    DecodeError error;
    error.kind = DecodeError::Kind::CannotRead;
    switch (why) {
        case OpenError::Missing:
            error.message = "The file is missing";
            break;
        case OpenError::NotRegular:
            error.message = "This is not a file that can be read";
            break;
        default:
            error.message = "The file cannot be read";
            break;
    }
    return error;
}

}  // namespace cinedisc::dicom
