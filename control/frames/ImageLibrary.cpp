#include "control/frames/ImageLibrary.h"

#include <QFile>

#include <stdexcept>
#include <utility>

namespace cinedisc {

namespace {

dicom::DecodeError tooLarge() {
    dicom::DecodeError error;
    error.kind = dicom::DecodeError::Kind::TooLarge;
    error.message = "the file needs more memory than there is";
    return error;
}

}  // namespace

ImageLibrary::ImageLibrary(Opener opener, std::shared_ptr<FrameStore> frames)
    : opener_(std::move(opener)), frames_(std::move(frames)) {}

ImageLibrary& ImageLibrary::shared() {
    static ImageLibrary library([](const std::string& path) { return dicom::DicomFile::open(path); });
    return library;
}

dicom::Result<std::shared_ptr<const ImageFile>> ImageLibrary::open(const QString& path) {
    const std::lock_guard lock(mutex_);
    const FileIdentity identity = FileIdentity::of(path);
    if (const auto found = files_.find(path); found != files_.end()) {
        auto file = found->second.lock();
        if (file && file->identity() == identity) return file;
    }
    std::erase_if(files_, [](const auto& entry) { return entry.second.expired(); });
    try {
        auto opened = opener_(QFile::encodeName(path).toStdString());
        if (!opened) return opened.error();
        auto file = std::make_shared<const ImageFile>(std::move(opened.value()), identity, frames_);
        files_[path] = file;
        return file;
    } catch (const std::bad_alloc&) {
        return tooLarge();
    } catch (const std::length_error&) {
        return tooLarge();
    }
}

}  // namespace cinedisc
