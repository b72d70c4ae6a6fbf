#include "control/frames/ImageFile.h"

#include "control/frames/LookAhead.h"

#include <type_traits>
#include <utility>

namespace cinedisc {

namespace {

/// Drawing reads as many samples as the header says: a frame must have them.
bool isWhole(const dicom::Frame& frame, const dicom::PixelFormat& format) {
    if (frame.rows != format.rows || frame.columns != format.columns || frame.rows < 1 || frame.columns < 1)
        return false;
    if (frame.samplesPerPixel != 1 && frame.samplesPerPixel != 3) return false;
    return std::visit(
        [&](const auto& samples) {
            using Sample = typename std::decay_t<decltype(samples)>::value_type;
            if (frame.samplesPerPixel == 3 && !std::is_same_v<Sample, std::uint8_t>) return false;
            return samples.size() >= frame.pixelCount() * static_cast<std::size_t>(frame.samplesPerPixel);
        },
        frame.samples);
}

}  // namespace

ImageFile::ImageFile(std::shared_ptr<const dicom::DicomFile> dicom, FileStamp identity,
                     std::shared_ptr<FrameStore> frames)
    : dicom_(std::move(dicom)),
      identity_(identity),
      frames_(std::move(frames)),
      coverKind_(dicom_->frameCount() > 0 ? coverKind(*dicom_) : CoverKind::None) {}

ImageFile::~ImageFile() { frames_->drop(this); }

FrameStore::Decoded ImageFile::frameWithin(std::chrono::milliseconds patience, int index, LookAhead& reader,
                                           Asker asker) const {
    return frames_->frameBy(FrameStore::Clock::now() + patience, {this, index},
                            [&] { reader.readFirst(shared_from_this(), index, asker); });
}

dicom::Result<dicom::Frame> ImageFile::decodeRead(int index, const dicom::FrameBytes& bytes) const {
    auto frame = dicom_->decodeRead(index, bytes);
    if (!frame || isWhole(frame.value(), dicom_->pixelFormat())) return frame;
    dicom::DecodeError error;
    error.message = "the picture does not have the size that its header says";
    error.frame = index;
    return error;
}

ValueRange ImageFile::firstFrameRange() const {
    {
        const std::lock_guard lock(mutex_);
        if (firstFrameRange_) return *firstFrameRange_;
    }
    const auto first = frame(0);
    const auto range = first->ok() ? storedRange(first->value(), dicom_->greyTransform(0).padding)
                                   : expressibleRange(dicom_->pixelFormat());
    const std::lock_guard lock(mutex_);
    firstFrameRange_ = range;
    return range;
}

std::shared_ptr<const CoverPlane> ImageFile::cover(int frame) const {
    if (coverKind_ == CoverKind::None) return nullptr;
    const int wanted = coverKind_ == CoverKind::SameOnAllFrames ? 0 : frame;
    const std::lock_guard lock(mutex_);
    if (coverFrame_ != wanted) {
        cover_ = std::make_shared<const CoverPlane>(coverOf(*dicom_, wanted));
        coverFrame_ = wanted;
    }
    return cover_;
}

QImage ImageFile::smallPicture(const SmallPicture& wanted) const {
    const std::lock_guard lock(mutex_);
    return small_ == wanted ? smallImage_ : QImage();
}

void ImageFile::keep(const SmallPicture& small, const QImage& image) const {
    const std::lock_guard lock(mutex_);
    small_ = small;
    smallImage_ = image;
}

}  // namespace cinedisc
