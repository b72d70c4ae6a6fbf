#include "dicom/DicomFile.h"

#include "dicom/FileByteSource.h"
#include "dicom/FileHeader.h"
#include "dicom/OpenedFile.h"

namespace cinedisc::dicom {

Result<std::shared_ptr<const DicomFile>> DicomFile::open(const std::string& path) {
    auto source = FileByteSource::open(path);
    if (!source) return source.error();
    return open(std::move(source.value()));
}

Result<std::shared_ptr<const DicomFile>> DicomFile::open(std::shared_ptr<const ByteSource> source) {
    auto header = readFileHeader(std::move(source));
    if (!header) return header.error();
    return std::shared_ptr<const DicomFile>(std::make_shared<OpenedFile>(std::move(header.value())));
}

}  // namespace cinedisc::dicom
