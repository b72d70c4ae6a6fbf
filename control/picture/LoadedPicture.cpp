#include "control/picture/LoadedPicture.h"

#include "control/frames/LookAhead.h"

namespace cinedisc {

namespace {

// What colour answers, which no window is applied to.
const WindowInForce colorWindow{false, {127.5, 255, dicom::Window::Function::LinearExact}};

}  // namespace

LoadedPicture::Loaded LoadedPicture::load(const QString& path) {
    // The old file is held until the new one is open: it may be the same.
    auto opened =
        path.isEmpty() ? dicom::Result<std::shared_ptr<const ImageFile>>(nullptr) : library_.open(path);
    const auto file = opened ? opened.value() : nullptr;
    const bool isFresh =
        currentFrame_ == 1 && polarity == 1 && !choice_.isMade() && decoded_ && decoded_->ok();
    if (file && file == file_ && path == path_ && isFresh) return Loaded::AsItWas;

    if (auto* const ahead = library_.ahead(); ahead && file_) ahead->leave(file_.get());
    path_ = path;
    file_ = file;
    ++fileRevision_;
    ++frameRevision_;
    decoded_.reset();
    fileWindow_.reset();
    fileFault_.reset();
    choice_ = {};
    polarity = 1;
    currentFrame_ = 1;
    if (!opened) {
        fileFault_ = opened.error();
    } else if (file_ && frameCount() == 0) {
        fileFault_ = file_->dicom().pictureError().value_or(
            dicom::DecodeError{dicom::DecodeError::Kind::NoPicture, "this file holds no picture"});
    }
    return Loaded::Anew;
}

bool LoadedPicture::show(int frame) {
    if (frame < 1 || frame > frameCount()) return false;
    if (frame == currentFrame_) return true;
    currentFrame_ = frame;
    ++frameRevision_;
    decoded_.reset();
    if (file_->dicom().hasGreyRulesByFrame()) fileWindow_.reset();
    return true;
}

const dicom::Frame* LoadedPicture::frame() const {
    if (frameCount() == 0) return nullptr;
    if (!decoded_) decoded_ = library_.frame(*file_, currentFrame_ - 1, asker_);
    return decoded_ && decoded_->ok() ? &decoded_->value() : nullptr;
}

bool LoadedPicture::isAwaited() const { return frameCount() > 0 && !frame() && !decoded_; }

void LoadedPicture::await() const {
    if (frameCount() > 0 && !decoded_) decoded_ = file_->frame(currentFrame_ - 1);
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

WindowInForce LoadedPicture::fileWindow() const {
    if (fileWindow_) return *fileWindow_;
    if (frameCount() == 0) {
        fileWindow_ = lastWindow_;
        return *fileWindow_;
    }
    const auto& file = file_->dicom();
    const auto grey = file.greyTransform(currentFrame_ - 1);
    fileWindow_ = ownWindow(grey);
    if (!fileWindow_) {
        const auto& format = file.pixelFormat();
        const bool narrow = format.sampleKind == dicom::SampleKind::Integer && format.bitsStored <= 8;
        const auto stored = narrow ? expressibleRange(format) : file_->firstFrameRange();
        fileWindow_ = windowOver(modalityRange(grey, stored), format.sampleKind);
    }
    return *fileWindow_;
}

WindowInForce LoadedPicture::window() const {
    if (isColor()) return colorWindow;
    lastWindow_ = choice_.over(fileWindow());
    lastWindow_.byTable = lastWindow_.byTable && frameCount() > 0;
    return lastWindow_;
}

void LoadedPicture::putWindowCenter(double center) {
    if (!isColor()) choice_.putCenter(fileWindow(), center);
}

void LoadedPicture::putWindowWidth(double width) {
    if (!isColor()) choice_.putWidth(fileWindow(), width);
}

ValueRange LoadedPicture::usedRange() const {
    const auto* shown = frame();
    if (!shown) return rangeOfBits();
    const auto grey = file_->dicom().greyTransform(currentFrame_ - 1);
    return modalityRange(grey, storedRange(*shown, grey.padding));
}

ValueRange LoadedPicture::rangeOfBits() const {
    if (frameCount() == 0) return {0, 255};
    return modalityRange(file_->dicom().greyTransform(currentFrame_ - 1),
                         expressibleRange(file_->dicom().pixelFormat()));
}

}  // namespace cinedisc
