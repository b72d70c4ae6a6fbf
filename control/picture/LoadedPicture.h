#pragma once

#include "control/frames/ImageLibrary.h"
#include "control/pipeline/WindowChoice.h"

#include <QString>

#include <memory>
#include <optional>

namespace cinedisc {

/// What one view has loaded: a file, the frame shown, and the window and polarity put on it. Owned by the
/// view, on the user-interface thread. Frames are decoded when first asked for.
class LoadedPicture {
  public:
    explicit LoadedPicture(ImageLibrary& library) : library_(library) {}

    /// Whether its frames come before those of others on a slow disc.
    void setAsker(Asker asker) { asker_ = asker; }

    enum class Loaded { Anew, AsItWas };
    /// Opens a file as its header says. "" unloads. The same file may look as it did.
    Loaded load(const QString& path);
    /// What comes after the frame shown is read and decoded ahead, at the end from the file `next`, "" for
    /// none.
    void lookAhead(PlayDirection direction, const QString& next) const;

    const QString& path() const { return path_; }
    /// The open file, null when there is none or it could not be read.
    const ImageFile* file() const { return file_.get(); }
    int frameCount() const { return file_ ? file_->dicom().frameCount() : 0; }
    /// Counted from 1.
    int currentFrame() const { return currentFrame_; }
    /// Whether there is such a frame; otherwise nothing changes.
    bool show(int frame);

    /// The frame shown; null when there is no picture, this frame cannot be shown or the disc has not given
    /// it yet.
    const dicom::Frame* frame() const;
    /// Whether there will be a frame, but the disc has not given it yet. Looks at the frame.
    bool isAwaited() const;
    /// Waits for the frame shown, however slow the disc.
    void await() const;
    /// Why nothing can be shown: of the file, or of this frame. Empty when there is a picture or nothing is
    /// loaded.
    std::optional<dicom::DecodeError> fault() const;
    bool isColor() const;
    /// Grows whenever a file is loaded, or a frame is shown.
    std::uint64_t fileRevision() const { return fileRevision_; }
    std::uint64_t frameRevision() const { return frameRevision_; }

    /// The window in force. Colour has a fixed one; without a picture it is the one that was last in force or
    /// put.
    WindowInForce window() const;
    void putWindowCenter(double center);
    void putWindowWidth(double width);
    const WindowChoice& windowChoice() const { return choice_; }
    void putWindowChoice(const WindowChoice& choice) { choice_ = choice; }
    /// The modality values that the frame shown has, padding aside.
    ValueRange usedRange() const;
    /// All modality values that the stored bits can express.
    ValueRange rangeOfBits() const;

    /// As put; the sign selects.
    qint32 polarity = 1;

  private:
    WindowInForce fileWindow() const;

    ImageLibrary& library_;
    Asker asker_ = Asker::MainView;
    QString path_;
    std::shared_ptr<const ImageFile> file_;
    std::optional<dicom::DecodeError> fileFault_;
    int currentFrame_ = 1;
    std::uint64_t fileRevision_ = 0;
    std::uint64_t frameRevision_ = 0;
    WindowChoice choice_;
    mutable FrameStore::Decoded decoded_;  ///< of currentFrame_, null before it was asked for or has come
    mutable std::optional<WindowInForce> fileWindow_;  ///< of currentFrame_, likewise
    mutable WindowInForce lastWindow_{false, {127.5, 255, dicom::Window::Function::Linear}};
};

}  // namespace cinedisc
