#include "control/frames/ImageLibrary.h"

#include "control/frames/LookAhead.h"

#include <QCoreApplication>
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

ImageLibrary::~ImageLibrary() = default;

ImageLibrary& ImageLibrary::shared() {
    static ImageLibrary library([](const std::string& path) { return dicom::DicomFile::open(path); });
    // Threads must not outlive what they use.
    static const bool stopsInTime = [] {
        qAddPostRoutine([] { library.ahead_.reset(); });
        return true;
    }();
    Q_UNUSED(stopsInTime);
    return library;
}

void ImageLibrary::lookAhead(std::chrono::milliseconds patience) {
    patience_ = patience;
    if (ahead_) return;
    LookAhead::Surroundings surroundings;
    surroundings.open = [this](const QString& path) -> std::shared_ptr<const ImageFile> {
        auto opened = open(path);
        return opened && opened.value()->dicom().frameCount() > 0 ? opened.value() : nullptr;
    };
    surroundings.arrived = [this] { arrivals_.tell(); };
    ahead_ = std::make_unique<LookAhead>(*frames_, std::move(surroundings));
}

FrameStore::Decoded ImageLibrary::frame(const ImageFile& file, int index, Asker asker) {
    if (!ahead_) return file.frame(index);
    auto frame =
        file.frameWithin(hasWaited_ ? std::chrono::milliseconds(0) : patience_, index, *ahead_, asker);
    hasWaited_ = !frame;
    return frame;
}

std::shared_ptr<const ImageFile> ImageLibrary::openedAs(const QString& path, const FileStamp& identity) {
    const auto found = files_.find(path);
    if (found == files_.end()) return nullptr;
    auto file = found->second.lock();
    return file && file->identity() == identity ? file : nullptr;
}

dicom::Result<std::shared_ptr<const ImageFile>> ImageLibrary::open(const QString& path) {
    const std::string encoded = QFile::encodeName(path).toStdString();
    const FileStamp identity = FileStamp::of(encoded);
    std::unique_lock lock(mutex_);
    // The disc is read without the lock, so that another file can be opened meanwhile.
    opened_.wait(lock, [&] { return !opening_.contains(path); });
    if (auto file = openedAs(path, identity)) {
        frames_->dropFaults(file.get());
        return file;
    }
    std::erase_if(files_, [](const auto& entry) { return entry.second.expired(); });
    opening_.insert(path);
    lock.unlock();
    auto result = [&]() -> dicom::Result<std::shared_ptr<const ImageFile>> {
        try {
            auto opened = opener_(encoded);
            if (!opened) return opened.error();
            return std::make_shared<const ImageFile>(std::move(opened.value()), identity, frames_);
        } catch (const std::bad_alloc&) {
            return tooLarge();
        } catch (const std::length_error&) {
            return tooLarge();
        }
    }();
    lock.lock();
    if (result) files_[path] = result.value();
    opening_.erase(path);
    opened_.notify_all();
    return result;
}

}  // namespace cinedisc
