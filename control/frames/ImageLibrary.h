#pragma once

#include "control/frames/FrameArrivals.h"
#include "control/frames/ImageFile.h"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace cinedisc {

/// The open files of the program by path, and its decoded frames: a file that several views show is opened
/// once. Owns no file; the views do.
class ImageLibrary {
  public:
    using Opener =
        std::function<dicom::Result<std::shared_ptr<const dicom::DicomFile>>(const std::string& path)>;

    /// Without threads of its own: frames are read by whoever asks for them.
    explicit ImageLibrary(Opener opener, std::shared_ptr<FrameStore> frames = std::make_shared<FrameStore>());
    ~ImageLibrary();
    /// The one that all views of the program share; it looks ahead.
    static ImageLibrary& shared();

    /// From now on frames are read and decoded ahead, and a view waits `patience` for the disc and no longer;
    /// once that was in vain, none waits until a frame has come.
    void lookAhead(std::chrono::milliseconds patience);

    /// The file at a path: the one already open, unless another has taken its place since. Frames of it that
    /// could not be shown will be tried again. Never throws; safe to call from any thread.
    dicom::Result<std::shared_ptr<const ImageFile>> open(const QString& path);

    /// A frame of an open file, counted from 0; null when the disc is slow to give it. On the user-interface
    /// thread.
    FrameStore::Decoded frame(const ImageFile& file, int index, Asker asker);

    FrameStore& frames() { return *frames_; }
    /// Null when frames are not read ahead.
    LookAhead* ahead() { return ahead_.get(); }
    /// Tells of frames that a view did not wait for.
    const FrameArrivals& arrivals() const { return arrivals_; }

  private:
    std::shared_ptr<const ImageFile> openedAs(const QString& path, const FileStamp& identity);

    Opener opener_;
    std::shared_ptr<FrameStore> frames_;
    std::mutex mutex_;
    std::condition_variable opened_;
    std::set<QString> opening_;
    std::map<QString, std::weak_ptr<const ImageFile>> files_;
    FrameArrivals arrivals_;
    std::chrono::milliseconds patience_{0};
    bool hasWaited_ = false;  ///< in vain
    std::unique_ptr<LookAhead> ahead_;
};

}  // namespace cinedisc
