#pragma once

#include "control/frames/ImageFile.h"

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace cinedisc {

/// The open files of the program by path, and its decoded frames: a file that several views show is opened
/// once. Owns no file; the views do.
class ImageLibrary {
  public:
    using Opener =
        std::function<dicom::Result<std::shared_ptr<const dicom::DicomFile>>(const std::string& path)>;

    explicit ImageLibrary(Opener opener, std::shared_ptr<FrameStore> frames = std::make_shared<FrameStore>());
    /// The one that all views of the program share.
    static ImageLibrary& shared();

    /// The file at a path: the one already open, unless another has taken its place since. Never throws.
    dicom::Result<std::shared_ptr<const ImageFile>> open(const QString& path);

    FrameStore& frames() { return *frames_; }

  private:
    Opener opener_;
    std::shared_ptr<FrameStore> frames_;
    std::mutex mutex_;
    std::map<QString, std::weak_ptr<const ImageFile>> files_;
};

}  // namespace cinedisc
