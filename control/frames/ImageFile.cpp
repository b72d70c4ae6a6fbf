#include "control/frames/ImageFile.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace cinedisc {

namespace {

/// Drawing reads as many samples as the header says: a frame must have them.
bool isWhole(const dicom::Frame& frame, const dicom::PixelFormat& format, int halvings = 0) {
    const auto halved = [&](int length) { return (length + (1 << halvings) - 1) >> halvings; };
    if (frame.rows != halved(format.rows) || frame.columns != halved(format.columns) || frame.rows < 1 ||
        frame.columns < 1)
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

std::size_t sampleBytes(const dicom::PixelFormat& format) {
    if (format.bitsAllocated <= 8) return 1;
    if (format.bitsAllocated <= 16) return 2;
    return format.bitsAllocated <= 32 ? 4 : 8;
}

DecodingWork workOf(const dicom::DicomFile& file) {
    if (!file.isSlowToDecode()) return DecodingWork::Little;
    return file.decodesOnAllProcessors() ? DecodingWork::AllProcessors : DecodingWork::Much;
}

}  // namespace

ImageFile::ImageFile(std::shared_ptr<const dicom::DicomFile> dicom, FileStamp identity,
                     std::shared_ptr<FrameStore> frames)
    : dicom_(std::move(dicom)),
      identity_(identity),
      frames_(std::move(frames)),
      coverKind_(dicom_->frameCount() > 0 ? coverKind(*dicom_) : CoverKind::None),
      work_(workOf(*dicom_)) {}

ImageFile::~ImageFile() { frames_->drop(this); }

std::size_t ImageFile::decodedFrameBytes() const {
    const auto& format = dicom_->pixelFormat();
    const auto pixels = static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns);
    const bool ownCover = coverKind_ == CoverKind::FrameByFrame;
    const std::size_t cover = ownCover ? CoverPlane::mostBytes(format.rows, format.columns) : 0;
    const auto samples = static_cast<std::size_t>(format.samplesPerPixel);
    return std::max<std::size_t>(1, pixels * sampleBytes(format) * samples + cover);
}

std::size_t ImageFile::decodingRoom() const {
    // Decoders hold coefficients, parts of the frame in other forms and the compressed bytes. Small frames
    // need no room of their own.
    constexpr std::size_t smallFrame = 16u << 20, timesFrame = 12;
    const std::size_t frame = decodedFrameBytes();
    return frame <= smallFrame ? 0 : std::min(frame * timesFrame, FrameStore::programCeiling);
}

DecodedFrame ImageFile::decodeRead(int index, const dicom::FrameBytes& bytes) const {
    DecodedFrame frame = dicom_->decodeRead(index, bytes);
    if (!frame) return frame;
    if (!isWhole(frame.value(), dicom_->pixelFormat())) {
        dicom::DecodeError error;
        error.reason = dicom::DecodeError::Reason::WrongSize;
        error.frame = index;
        return error;
    }
    if (coverKind_ == CoverKind::SameOnAllFrames) frame.cover = sharedCover();
    if (coverKind_ == CoverKind::FrameByFrame) {
        frame.cover = std::make_shared<const CoverPlane>(coverOf(*dicom_, index, &bytes));
        frame.coverBytes = frame.cover->byteSize();
    }
    return frame;
}

std::shared_ptr<const CoarsePicture> ImageFile::decodeCoarse(int index, const dicom::FrameBytes& bytes,
                                                             Asker asker) const {
    // Enough to recognise a vessel, and little enough to be drawn in time.
    constexpr int sideOfView = 256, sideOfPreview = 128;
    // Overlays within the pixel cells can be had with the whole frame only.
    if (std::ranges::any_of(dicom_->overlays(), [](const auto& overlay) { return overlay.embeddedBit >= 0; }))
        return nullptr;
    auto coarse = dicom_->decodeCoarse(index, bytes, asker == Asker::Preview ? sideOfPreview : sideOfView);
    if (!coarse || !isWhole(coarse->frame, dicom_->pixelFormat(), coarse->halvings)) return nullptr;
    auto picture = std::make_shared<CoarsePicture>(CoarsePicture{std::move(*coarse), nullptr});
    if (coverKind_ == CoverKind::SameOnAllFrames) picture->cover = sharedCover();
    if (coverKind_ == CoverKind::FrameByFrame)
        picture->cover = std::make_shared<const CoverPlane>(coverOf(*dicom_, index, &bytes));
    return picture;
}

std::shared_ptr<const CoverPlane> ImageFile::sharedCover() const {
    const std::lock_guard lock(mutex_);
    if (!cover_) cover_ = std::make_shared<const CoverPlane>(coverOf(*dicom_, 0));
    return cover_;
}

std::optional<ValueRange> ImageFile::firstFrameRange() const {
    const std::lock_guard lock(mutex_);
    return firstFrameRange_;
}

void ImageFile::noteFirstFrame(const DecodedFrame& first) const {
    const auto range = first.ok() ? frameRange(first.value(), dicom_->greyTransform(0).padding)
                                  : expressibleRange(dicom_->pixelFormat());
    const std::lock_guard lock(mutex_);
    firstFrameRange_ = range;
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
