#include "control/frames/ImageLibrary.h"

#include "control/frames/LookAhead.h"
#include "control/frames/StampReader.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace cinedisc {

namespace {

dicom::DecodeError tooLarge() {
    dicom::DecodeError error;
    error.kind = dicom::DecodeError::Kind::TooLarge;
    error.reason = dicom::DecodeError::Reason::Memory;
    return error;
}

std::shared_ptr<Opening> doneWith(Opening::Outcome outcome) {
    auto opening = std::make_shared<Opening>([&] { return std::move(outcome); });
    opening->run();
    return opening;
}

}  // namespace

ImageLibrary::ImageLibrary(Opener opener, std::shared_ptr<FrameStore> frames, Stamp stamp)
    : opener_(std::move(opener)), frames_(std::move(frames)), stamp_(std::move(stamp)) {}

ImageLibrary::~ImageLibrary() = default;

ImageLibrary& ImageLibrary::shared() {
    static ImageLibrary library([](const std::string& path) { return dicom::DicomFile::open(path); });
    // Threads must not outlive what they use.
    static const bool stopsInTime = [] {
        qAddPostRoutine([] {
            library.ahead_.reset();
            library.stamps_.reset();
        });
        return true;
    }();
    Q_UNUSED(stopsInTime);
    return library;
}

void ImageLibrary::lookAhead(std::chrono::milliseconds glance, std::chrono::milliseconds answer) {
    glance_ = glance;
    answer_ = std::max(glance, answer);
    if (ahead_) return;
    frames_->onArrival([this] { arrivals_.tell(); });
    stamps_ = std::make_unique<StampReader>(stamp_);
    ahead_ = std::make_unique<LookAhead>(
        *frames_, [this](const QString& path) -> std::shared_ptr<const ImageFile> {
            const auto opened = open(path);
            return opened && opened.value()->dicom().frameCount() > 0 ? opened.value() : nullptr;
        });
}

std::chrono::milliseconds ImageLibrary::limit(Patience patience) const {
    if (patience == Patience::Glance) return hasGlanced_ ? std::chrono::milliseconds(0) : glance_;
    return gaveUpAfter_ == ahead_->served() ? std::chrono::milliseconds(0) : answer_;
}

void ImageLibrary::note(Patience patience, bool waitedInVain) {
    hasGlanced_ = waitedInVain;
    if (patience == Patience::Answer && waitedInVain) gaveUpAfter_ = ahead_->served();
}

/// `wait` is given the end of the wait, and returns what comes until then.
template <typename Wait>
auto ImageLibrary::waitUpTo(std::chrono::milliseconds limit, const Wait& wait) {
    constexpr std::chrono::milliseconds unnoticed{150}, breath{20};
    const auto begun = FrameStore::Clock::now();
    auto result = wait(begun + (longWait_ ? std::min(limit, unnoticed) : limit));
    if (result || limit <= unnoticed || !longWait_) return result;
    isWaiting_ = true;
    longWait_(LongWait::Begins);
    for (auto now = begun; !result && now < begun + limit; now = FrameStore::Clock::now()) {
        longWait_(LongWait::GoesOn);
        result = wait(std::min(FrameStore::Clock::now() + breath, begun + limit));
    }
    longWait_(LongWait::Ends);
    isWaiting_ = false;
    arrivals_.tell();
    return result;
}

FrameStore::Decoded ImageLibrary::frame(const void* view, Asker asker,
                                        const std::shared_ptr<const ImageFile>& file, int index,
                                        Patience patience) {
    if (!ahead_) return file->frame(index);
    if (isWaiting_) return nullptr;
    if (auto frame = frames_->want({view, asker, file, index})) return frame;
    ahead_->wake();
    auto frame = waitUpTo(limit(patience), [&](auto end) { return frames_->waitFor(view, end); });
    note(patience, !frame);
    return frame;
}

ImageLibrary::Sight ImageLibrary::glance(const void* view, Asker asker,
                                         const std::shared_ptr<const ImageFile>& file, int index) {
    if (!ahead_ || isWaiting_ || file->decodingWork() == DecodingWork::Little)
        return {frame(view, asker, file, index, Patience::Glance), nullptr};
    if (auto frame = frames_->want({view, asker, file, index})) return {std::move(frame), nullptr};
    ahead_->wake(LookAhead::Decoders::AsThereAre);
    auto atHand =
        frames_->waitForBytes(view, {file.get(), index}, FrameStore::Clock::now() + limit(Patience::Glance));
    note(Patience::Glance, !atHand.frame && !atHand.bytes);
    if (atHand.frame || !atHand.bytes) return {std::move(atHand.frame), nullptr};
    if (auto coarse = file->decodeCoarse(index, *atHand.bytes, asker)) return {nullptr, std::move(coarse)};
    return {frame(view, asker, file, index, Patience::Glance), nullptr};
}

FrameStore::Decoded ImageLibrary::whenIdle(const void* view, const std::shared_ptr<const ImageFile>& file,
                                           int index) {
    if (!ahead_ || isWaiting_) return nullptr;
    auto frame = frames_->want({view, Asker::WhenIdle, file, index});
    if (!frame) ahead_->wakeWhenIdle();
    return frame;
}

std::shared_ptr<HeaderText> ImageLibrary::headerText(std::shared_ptr<const ImageFile> file,
                                                     dicom::LongValues longValues) {
    auto text = std::make_shared<HeaderText>(std::move(file), longValues, [this] { arrivals_.tell(); });
    if (ahead_)
        ahead_->send(text, Asker::MainView);
    else
        text->run();
    return text;
}

bool ImageLibrary::waitFor(const Errand& errand, Patience patience) {
    if (isWaiting_) return false;
    if (errand.isDone()) return true;
    const bool done = waitUpTo(limit(patience), [&](auto end) { return errand.waitUntil(end); });
    note(patience, !done);
    return done;
}

std::shared_ptr<const ImageFile> ImageLibrary::openedAs(const QString& path, const FileStamp& identity) {
    const std::lock_guard lock(mutex_);
    const auto found = files_.find(path);
    if (found == files_.end()) return nullptr;
    auto file = found->second.lock();
    return file && file->identity() == identity ? file : nullptr;
}

Opening::Outcome ImageLibrary::open(const QString& path) {
    // Two threads that open the same file at once both read it; the second then takes the first one's.
    try {
        const std::string encoded = path.toStdString();
        const FileStamp identity = stamp_(encoded);
        if (auto file = openedAs(path, identity)) {
            frames_->dropFaults(file.get());
            return file;
        }
        auto opened = opener_(encoded);
        if (!opened) return opened.error();
        const auto file = std::make_shared<const ImageFile>(std::move(opened.value()), identity, frames_);
        if (auto other = openedAs(path, identity)) return other;
        const std::lock_guard lock(mutex_);
        std::erase_if(files_, [](const auto& entry) { return entry.second.expired(); });
        files_[path] = file;
        return file;
    } catch (const std::bad_alloc&) {
        return tooLarge();
    } catch (const std::length_error&) {
        return tooLarge();
    } catch (...) {
        return dicom::DecodeError{dicom::DecodeError::Kind::CannotRead};
    }
}

/// The file that is open at a path, when the system can tell at once that it is still the one there.
std::shared_ptr<const ImageFile> ImageLibrary::stillOpen(const QString& path) {
    {
        const std::lock_guard lock(mutex_);
        const auto found = files_.find(path);
        if (found == files_.end() || found->second.expired()) return nullptr;
    }
    const auto identity = stamps_->within(glance_, path.toStdString());
    return identity ? openedAs(path, *identity) : nullptr;
}

std::shared_ptr<Opening> ImageLibrary::request(const QString& path, Asker asker) {
    if (!ahead_) return doneWith(open(path));
    if (auto file = stillOpen(path)) {
        frames_->dropFaults(file.get());
        return doneWith(std::move(file));
    }
    std::erase_if(openings_, [](const auto& entry) { return entry.second.expired(); });
    auto& known = openings_[path];
    auto wanted = known.lock();
    if (!wanted || wanted->isDone())
        known = wanted = std::make_shared<Opening>([this, path] { return open(path); },
                                                   [this] { arrivals_.tell(); }, asker);
    ahead_->send(wanted, asker);
    return wanted;
}

}  // namespace cinedisc
