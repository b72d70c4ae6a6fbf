#pragma once

#include "control/frames/FrameStore.h"
#include "control/frames/SmallPicture.h"
#include "control/pipeline/CoverPlane.h"
#include "control/pipeline/ValueRange.h"
#include "dicom/DicomFile.h"
#include "platform/io/FileStamp.h"

#include <QImage>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>

namespace cinedisc {

/// An open file, shared by all views that show it, with what is worked out once for all of them. The last
/// view that lets it go closes the file and frees its frames. Safe to call from any thread.
class ImageFile : public FrameRun, public std::enable_shared_from_this<ImageFile> {
  public:
    ImageFile(std::shared_ptr<const dicom::DicomFile> dicom, FileStamp identity,
              std::shared_ptr<FrameStore> frames);
    ~ImageFile() override;
    ImageFile(const ImageFile&) = delete;
    ImageFile& operator=(const ImageFile&) = delete;

    const dicom::DicomFile& dicom() const { return *dicom_; }
    const FileStamp& identity() const { return identity_; }

    /// A frame, counted from 0, from the store or read and decoded now, in the calling thread.
    FrameStore::Decoded frame(int index) const { return frames_->frame({this, index}); }
    /// Memory that one decoded frame takes, at least 1 byte.
    std::size_t decodedFrameBytes() const;

    dicom::Result<dicom::FrameBytes> readFrame(int index) const override { return dicom_->readFrame(index); }
    bool approachFrame(int index) const override { return dicom_->approachFrame(index); }
    DecodedFrame decodeRead(int index, const dicom::FrameBytes& bytes) const override;
    DecodingWork decodingWork() const override { return work_; }
    std::size_t decodingRoom() const override;
    std::shared_ptr<const CoarsePicture> decodeCoarse(int index, const dicom::FrameBytes& bytes,
                                                      Asker asker) const override;
    /// Range of the stored values in the first frame, without padding; what the bits can express when it
    /// cannot be decoded. Not known before that frame has been decoded.
    std::optional<ValueRange> firstFrameRange() const;
    /// Works it out of the first frame, or of what is wrong with it.
    void noteFirstFrame(const DecodedFrame& first) const;

    /// The small picture that was kept last, null unless it is the wanted one.
    QImage smallPicture(const SmallPicture& wanted) const;
    void keep(const SmallPicture& small, const QImage& image) const;

  private:
    std::shared_ptr<const dicom::DicomFile> dicom_;
    FileStamp identity_;
    std::shared_ptr<FrameStore> frames_;
    CoverKind coverKind_;
    DecodingWork work_;

    std::shared_ptr<const CoverPlane> sharedCover() const;

    mutable std::mutex mutex_;
    mutable std::optional<ValueRange> firstFrameRange_;
    mutable std::shared_ptr<const CoverPlane> cover_;  ///< the same on all frames
    mutable SmallPicture small_;
    mutable QImage smallImage_;
};

}  // namespace cinedisc
