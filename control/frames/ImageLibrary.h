#pragma once

#include "control/frames/FrameArrivals.h"
#include "control/frames/HeaderText.h"
#include "control/frames/ImageFile.h"
#include "control/frames/Opening.h"

#include <QString>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace cinedisc {

class LookAhead;
class StampReader;

/// How long the window waits for the disc.
enum class Patience {
    Glance,  ///< too short to be felt; afterwards the view says that it reads
    Answer,  ///< as long as a command may that cannot go on without
};

/// The open files of the program by path, and its decoded frames: a file that several views show is opened
/// once. Owns no file; the views do. On the user-interface thread but where it says otherwise.
class ImageLibrary {
  public:
    using Opener =
        std::function<dicom::Result<std::shared_ptr<const dicom::DicomFile>>(const std::string& path)>;
    using Stamp = std::function<FileStamp(const std::string& path)>;

    /// Without threads of its own: files are opened and frames are read by whoever asks for them.
    explicit ImageLibrary(Opener opener, std::shared_ptr<FrameStore> frames = std::make_shared<FrameStore>(),
                          Stamp stamp = FileStamp::of);
    ~ImageLibrary();
    /// The one that all views of the program share; it looks ahead.
    static ImageLibrary& shared();

    /// From now on one thread has the disc, and frames are read and decoded ahead. No one waits longer than
    /// these times; once a glance was in vain, there are none until a frame has come, and once an answer was,
    /// none is waited for until the disc has given something.
    void lookAhead(std::chrono::milliseconds glance,
                   std::chrono::milliseconds answer = std::chrono::seconds(5));

    /// Called by whoever has waited for an answer so long that a person notices; again and again while it
    /// goes on, so that windows can be drawn. Until it ends the views get nothing new: whoever waits may be
    /// about to change what they have.
    enum class LongWait { Begins, GoesOn, Ends };
    void onLongWait(std::function<void(LongWait)> told) { longWait_ = std::move(told); }
    bool isWaiting() const { return isWaiting_; }

    /// The file at a path: the one already open, unless another has taken its place since. Frames of it that
    /// could not be shown will be tried again. Waits for the disc; never throws; safe to call from any
    /// thread.
    Opening::Outcome open(const QString& path);
    /// The same without waiting, but a glance for a file that is open already. `arrivals` tells when it is
    /// done. Nothing is opened that nobody holds any more when its turn comes.
    std::shared_ptr<Opening> request(const QString& path, Asker asker);
    /// The header of an open file as text; likewise.
    std::shared_ptr<HeaderText> headerText(std::shared_ptr<const ImageFile> file,
                                           dicom::LongValues longValues);
    /// Whether it is done by then.
    bool waitFor(const Errand& errand, Patience patience);

    /// A frame of an open file, counted from 0, for a view; null when the disc is slow to give it: then
    /// `arrivals` tells. A view waits for one frame at a time.
    FrameStore::Decoded frame(const void* view, Asker asker, const std::shared_ptr<const ImageFile>& file,
                              int index, Patience patience);
    /// The same for drawing it. While it is being decoded there may be a coarse picture of it: then the view
    /// goes on waiting for the frame.
    struct Sight {
        FrameStore::Decoded frame;
        std::shared_ptr<const CoarsePicture> coarse;
    };
    Sight glance(const void* view, Asker asker, const std::shared_ptr<const ImageFile>& file, int index);
    /// The frame at hand, or null: then it is read and decoded once there is nothing else to do for any view,
    /// and `arrivals` tells.
    FrameStore::Decoded whenIdle(const void* view, const std::shared_ptr<const ImageFile>& file, int index);
    /// The frame that a view waits for, if it has come.
    FrameStore::Decoded arrived(const void* view, Asker asker, const std::shared_ptr<const ImageFile>& file,
                                int index) {
        return isWaiting_ ? nullptr : frames_->want({view, asker, file, index});
    }
    /// The view waits for no frame any more.
    void forget(const void* view) { frames_->forget(view); }

    FrameStore& frames() { return *frames_; }
    /// Null when frames are not read ahead.
    LookAhead* ahead() { return ahead_.get(); }
    /// Tells of files and frames that a view did not wait for.
    const FrameArrivals& arrivals() const { return arrivals_; }

  private:
    std::shared_ptr<const ImageFile> openedAs(const QString& path, const FileStamp& identity);
    std::shared_ptr<const ImageFile> stillOpen(const QString& path);
    std::chrono::milliseconds limit(Patience patience) const;
    void note(Patience patience, bool waitedInVain);
    template <typename Wait>
    auto waitUpTo(std::chrono::milliseconds limit, const Wait& wait);

    Opener opener_;
    std::shared_ptr<FrameStore> frames_;
    Stamp stamp_;
    std::mutex mutex_;
    std::map<QString, std::weak_ptr<const ImageFile>> files_;
    std::map<QString, std::weak_ptr<Opening>> openings_;
    FrameArrivals arrivals_;
    std::chrono::milliseconds glance_{0}, answer_{0};
    std::function<void(LongWait)> longWait_;
    bool isWaiting_ = false;
    bool hasGlanced_ = false;              ///< in vain
    std::optional<unsigned> gaveUpAfter_;  ///< what the disc had served when an answer was given up
    std::unique_ptr<StampReader> stamps_;
    std::unique_ptr<LookAhead> ahead_;
};

}  // namespace cinedisc
