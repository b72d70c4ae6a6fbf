#include "control/picture/LoadedPicture.h"

#include "control/frames/LookAhead.h"

#include <utility>

namespace cinedisc {

namespace {

// What the window members return for colour, which no window is applied to.
const WindowInForce colorWindow{false, {127.5, 255, dicom::Window::Function::LinearExact}};

}  // namespace

LoadedPicture::~LoadedPicture() { library_.forget(this); }

LoadedPicture::Loaded LoadedPicture::load(const QString& path) {
    // The old file is held until the new one is asked for: it may be the same.
    auto opening = path.isEmpty() ? nullptr : library_.request(path, asker_);
    const bool isSeen = coarse_ || (decoded_ && decoded_->ok());
    const bool isFresh = currentFrame_ == 1 && polarity == 1 && !choice_.isMade() && isSeen;
    const bool isSame = opening && opening->isDone() && opening->outcome().ok() && file_ &&
                        opening->outcome().value() == file_ && path == path_;
    if (isSame && isFresh) return Loaded::AsItWas;

    // A preview that turns to another file has no say in what the main view plays.
    if (auto* const ahead = library_.ahead(); ahead && file_ && asker_ == Asker::MainView)
        ahead->leave(file_.get());
    library_.forget(this);
    path_ = path;
    choice_ = {};
    polarity = 1;
    currentFrame_ = 1;
    opening_ = std::move(opening);
    if (isOpening() && opening_->isDone()) {
        settle(Patience::Glance);
    } else {
        take(Opening::Outcome(nullptr));
    }
    return Loaded::Anew;
}

LoadedPicture::Settled LoadedPicture::settle(Patience patience) {
    if (!opening_) return Settled::Already;
    if (!library_.waitFor(*opening_, patience)) return Settled::NotYet;
    take(std::exchange(opening_, nullptr)->outcome());
    return Settled::Now;
}

void LoadedPicture::showWhenIdle(const LoadedPicture& other, int frame) {
    asker_ = Asker::WhenIdle;
    polarity = other.polarity;
    choice_ = other.choice_;
    if (file_ == other.file_ && currentFrame_ == frame) return;
    library_.forget(this);
    path_ = other.path_;
    take(Opening::Outcome(other.file_));
    currentFrame_ = frame;
}

void LoadedPicture::take(const Opening::Outcome& outcome) {
    file_ = outcome ? outcome.value() : nullptr;
    ++fileRevision_;
    ++frameRevision_;
    decoded_.reset();
    coarse_.reset();
    fileWindow_.reset();
    fileFault_.reset();
    if (!outcome) {
        fileFault_ = outcome.error();
    } else if (file_ && frameCount() == 0) {
        fileFault_ =
            file_->dicom().pictureError().value_or(dicom::DecodeError{dicom::DecodeError::Kind::NoPicture});
    }
}

void LoadedPicture::show(int frame) {
    if (frame < 1 || frame > frameCount() || frame == currentFrame_) return;
    currentFrame_ = frame;
    ++frameRevision_;
    decoded_.reset();
    coarse_.reset();
    if (file_->dicom().hasGreyRulesByFrame()) fileWindow_.reset();
}

const dicom::Frame* LoadedPicture::frame() const {
    fetch(Patience::Glance);
    if (coarse_) return &coarse_->frame;
    return decoded_ && decoded_->ok() ? &decoded_->value() : nullptr;
}

void LoadedPicture::fetch(Patience patience) const {
    if (frameCount() == 0 || decoded_ || coarse_) return;
    if (asker_ == Asker::WhenIdle) return take(library_.whenIdle(this, file_, currentFrame_ - 1));
    if (lacksRange() && currentFrame_ > 1) {
        const auto first = library_.frame(this, asker_, file_, 0, patience);
        if (!first) return;
        file_->noteFirstFrame(*first);
    }
    if (patience == Patience::Answer)
        return take(library_.frame(this, asker_, file_, currentFrame_ - 1, patience));
    auto sight = library_.glance(this, asker_, file_, currentFrame_ - 1);
    coarse_ = std::move(sight.coarse);
    take(std::move(sight.frame));
}

void LoadedPicture::take(FrameStore::Decoded frame) const {
    if (!frame) return;
    decoded_ = std::move(frame);
    if (currentFrame_ == 1 && lacksRange()) file_->noteFirstFrame(*decoded_);
    if (!coarse_) return;
    coarse_.reset();
    ++frameRevision_;
}

bool LoadedPicture::refine() {
    if (coarse_) take(library_.arrived(this, asker_, file_, currentFrame_ - 1));
    return decoded_ != nullptr;
}

bool LoadedPicture::isAwaited() const { return isOpening() || (frameCount() > 0 && !frame() && !decoded_); }

void LoadedPicture::await() {
    settle(Patience::Answer);
    // What has been read is decoded for certain, and that is waited for.
    if (coarse_) take(file_->frame(currentFrame_ - 1));
    fetch(Patience::Answer);
}

void LoadedPicture::lookAhead(PlayDirection direction, const QString& next) const {
    if (frameCount() > 0 && library_.ahead())
        library_.ahead()->follow(file_, currentFrame_ - 1, direction, next);
}

std::optional<dicom::DecodeError> LoadedPicture::fault() const {
    if (fileFault_) return fileFault_;
    if (frameCount() == 0 || frame() || !decoded_) return std::nullopt;
    return decoded_->error();
}

bool LoadedPicture::isColor() const {
    if (frameCount() == 0) return false;
    const auto& format = file_->dicom().pixelFormat();
    return format.samplesPerPixel == 3 ||
           (format.photometric == dicom::Photometric::PaletteColor && file_->dicom().palette());
}

/// Whether the file's own window depends on a first frame that has not been looked at.
bool LoadedPicture::lacksRange() const {
    const auto& format = file_->dicom().pixelFormat();
    const bool narrow = format.sampleKind == dicom::SampleKind::Integer && format.bitsStored <= 8;
    return !fileWindow_ && !narrow && !isColor() && !file_->firstFrameRange() &&
           !ownWindow(file_->dicom().greyTransform(currentFrame_ - 1));
}

void LoadedPicture::learnRange(Patience patience) const {
    if (file_->firstFrameRange()) return;
    // A wish of its own: the view may be waiting for the frame shown.
    const void* const question = &fileWindow_;
    const auto first = library_.frame(question, asker_, file_, 0, patience);
    library_.forget(question);
    if (first) file_->noteFirstFrame(*first);
}

ValueRange LoadedPicture::firstFrameRange() const {
    return file_->firstFrameRange().value_or(expressibleRange(file_->dicom().pixelFormat()));
}

void LoadedPicture::awaitWindow() {
    if (settle(Patience::Answer) == Settled::NotYet || frameCount() == 0 || !lacksRange()) return;
    // What has been read is decoded for certain, and that is waited for.
    if (coarse_) file_->noteFirstFrame(*file_->frame(0));
    if (lacksRange()) learnRange(Patience::Answer);
}

WindowInForce LoadedPicture::fileWindow() const {
    if (fileWindow_) return *fileWindow_;
    if (frameCount() == 0) {
        fileWindow_ = lastWindow_;
        return *fileWindow_;
    }
    const auto& file = file_->dicom();
    const auto grey = file.greyTransform(currentFrame_ - 1);
    if (const auto own = ownWindow(grey)) {
        fileWindow_ = own;
        return *fileWindow_;
    }
    const auto& format = file.pixelFormat();
    const bool narrow = format.sampleKind == dicom::SampleKind::Integer && format.bitsStored <= 8;
    const auto stored = narrow ? expressibleRange(format) : firstFrameRange();
    const auto window = windowOver(modalityRange(grey, stored), format.sampleKind);
    // A window that was made up before the first frame was there does not last.
    if (narrow || file_->firstFrameRange()) fileWindow_ = window;
    return window;
}

WindowInForce LoadedPicture::window() const {
    if (isColor()) return colorWindow;
    lastWindow_ = choice_.over(fileWindow());
    lastWindow_.byTable = lastWindow_.byTable && frameCount() > 0;
    return lastWindow_;
}

WindowInForce LoadedPicture::drawnFileWindow() const {
    if (!coarse_ || !lacksRange()) return fileWindow();
    const auto grey = file_->dicom().greyTransform(currentFrame_ - 1);
    const auto values = modalityRange(grey, frameRange(coarse_->frame, grey.padding));
    return windowOver(values, file_->dicom().pixelFormat().sampleKind);
}

WindowInForce LoadedPicture::drawnWindow() const {
    return coarse_ && lacksRange() ? choice_.over(drawnFileWindow()) : window();
}

void LoadedPicture::putWindowCenter(double center) {
    if (!isColor()) choice_.putCenter(drawnFileWindow(), center);
}

void LoadedPicture::putWindowWidth(double width) {
    if (!isColor()) choice_.putWidth(drawnFileWindow(), width);
}

ValueRange LoadedPicture::usedRange() const {
    const auto* shown = frame();
    if (!shown) return rangeOfBits();
    const auto grey = file_->dicom().greyTransform(currentFrame_ - 1);
    return modalityRange(grey, frameRange(*shown, grey.padding));
}

ValueRange LoadedPicture::rangeOfBits() const {
    if (frameCount() == 0) return {0, 255};
    return modalityRange(file_->dicom().greyTransform(currentFrame_ - 1),
                         expressibleRange(file_->dicom().pixelFormat()));
}

}  // namespace cinedisc
