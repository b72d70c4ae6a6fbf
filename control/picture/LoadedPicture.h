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
    ~LoadedPicture();
    LoadedPicture(const LoadedPicture&) = delete;
    LoadedPicture& operator=(const LoadedPicture&) = delete;

    /// Whether its frames come before those of others on a slow disc.
    void setAsker(Asker asker) { asker_ = asker; }

    enum class Loaded { Anew, AsItWas };
    /// Loads a file as its header says. "" unloads. The same file may look as it did. On a slow disc it is
    /// not open yet: it has no frames before it is settled.
    Loaded load(const QString& path);
    bool isOpening() const { return opening_ != nullptr; }
    /// Takes what has been opened, if it has been within the patience. What was put meanwhile holds.
    enum class Settled { Already, Now, NotYet };
    Settled settle(Patience patience);
    /// Another frame, counted from 1, of what another view has loaded, displayed alike: it comes once there
    /// is nothing else to do, and is not waited for.
    void showWhenIdle(const LoadedPicture& other, int frame);
    /// What comes after the frame shown is read and decoded ahead, at the end from the file `next`, "" for
    /// none.
    void lookAhead(PlayDirection direction, const QString& next) const;

    const QString& path() const { return path_; }
    /// The open file, null when there is none or it could not be read.
    const ImageFile* file() const { return file_.get(); }
    /// Its header as text, null without a file.
    std::shared_ptr<HeaderText> headerText(dicom::LongValues longValues) const {
        return file_ ? library_.headerText(file_, longValues) : nullptr;
    }
    /// Whether that, or another errand, is done within the patience.
    bool waitFor(const Errand& errand, Patience patience) const { return library_.waitFor(errand, patience); }
    int frameCount() const { return file_ ? file_->dicom().frameCount() : 0; }
    /// Counted from 1.
    int currentFrame() const { return currentFrame_; }
    /// Changes nothing when there is no such frame.
    void show(int frame);

    /// The frame shown; null when there is no picture, this frame cannot be shown or the disc has not given
    /// it yet. While it is being decoded these may be the samples of a coarse picture of it.
    const dicom::Frame* frame() const;
    /// The coarse picture that stands for the frame, null when frame() is the frame itself.
    const dicom::CoarseFrame* coarse() const { return coarse_.get(); }
    /// Puts the frame itself in place of its coarse picture. Returns whether it has come.
    bool refine();
    /// What lies over that frame, null for nothing.
    const CoverPlane* cover() const {
        return coarse_ ? coarse_->cover.get() : decoded_ ? decoded_->cover.get() : nullptr;
    }
    /// Whether there will be a frame, but the disc has not given it yet. Looks at the frame.
    bool isAwaited() const;
    /// Waits for the frame shown, itself, as long as a command may.
    void await();
    /// Why nothing can be shown: of the file, or of this frame. Empty when there is a picture or nothing is
    /// loaded.
    std::optional<dicom::DecodeError> fault() const;
    bool isColor() const;
    /// Grows whenever a file is loaded; a frame is shown, or takes the place of its coarse picture.
    std::uint64_t fileRevision() const { return fileRevision_; }
    std::uint64_t frameRevision() const { return frameRevision_; }

    /// The window in force. Colour has a fixed one; without a picture it is the one that was last in force or
    /// put.
    WindowInForce window() const;
    /// The window that the picture is drawn with. Of a coarse picture, where the file does not tell one and
    /// it depends on the frame's values, it is near the one in force.
    WindowInForce drawnWindow() const;
    /// Waits as long as a command may for what the file's own window depends on.
    void awaitWindow();
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
    WindowInForce drawnFileWindow() const;
    bool lacksRange() const;
    void fetch(Patience patience) const;
    void take(FrameStore::Decoded frame) const;
    void learnRange(Patience patience) const;
    ValueRange firstFrameRange() const;
    void take(const Opening::Outcome& outcome);

    ImageLibrary& library_;
    Asker asker_ = Asker::MainView;
    QString path_;
    std::shared_ptr<Opening> opening_;  ///< of path_, until it is settled
    std::shared_ptr<const ImageFile> file_;
    std::optional<dicom::DecodeError> fileFault_;
    int currentFrame_ = 1;
    std::uint64_t fileRevision_ = 0;
    mutable std::uint64_t frameRevision_ = 0;
    WindowChoice choice_;
    mutable FrameStore::Decoded decoded_;  ///< of currentFrame_, null before it was asked for or has come
    mutable std::shared_ptr<const CoarsePicture> coarse_;  ///< of it, until it has come
    mutable std::optional<WindowInForce> fileWindow_;      ///< of currentFrame_, likewise
    mutable WindowInForce lastWindow_{false, {127.5, 255, dicom::Window::Function::Linear}};
};

}  // namespace cinedisc
