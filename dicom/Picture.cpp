#include "dicom/Picture.h"

#include "dicom/CodeStream.h"
#include "dicom/ElementHeader.h"
#include "dicom/EncapsulatedFrames.h"
#include "dicom/Faults.h"
#include "dicom/NativeFrames.h"
#include "dicom/PixelDescription.h"
#include "dicom/Tags.h"

#include <algorithm>
#include <array>
#include <climits>

namespace cinedisc::dicom {

namespace {

using Pixels = TransferSyntax::Pixels;

/// A compressed frame that somebody forgot to encapsulate: the value is its code stream.
class BareStream : public FrameSource {
  public:
    explicit BareStream(const FileHeader& header) : source_(header.body), pixels_(*header.pixels) {
        const std::uint64_t room = source_->size() - std::min(source_->size(), pixels_.offset);
        isComplete_ = pixels_.length <= room;
    }

    int count() const override { return isComplete_ ? 1 : 0; }
    Result<FrameBytes> read(int frame) const override {
        constexpr std::uint64_t most = 256ull << 20;
        if (pixels_.length > most) return faults::damaged(pixels_.tag, pixels_.offset, frame);
        FrameBytes bytes;
        bytes.storage.resize(static_cast<std::size_t>(pixels_.length));
        bytes.length = source_->readAt(pixels_.offset, bytes.storage);
        return bytes;
    }

  private:
    std::shared_ptr<const ByteSource> source_;
    PixelElement pixels_;
    bool isComplete_ = false;
};

bool beginsWithItem(const FileHeader& header) {
    std::array<std::byte, itemHeader> start{};
    const std::size_t got = header.body->readAt(header.pixels->offset, start);
    const auto item = readElementHeader(std::span(start).first(got), implicitLittle, got);
    return item && item->tag == tags::Item;
}

/// Whether the pixels are wrapped into fragments: an undefined length says so, whatever the syntax; a length
/// that native pixels of this size would have says the contrary.
bool isEncapsulated(const FileHeader& header, const PixelFormat& format, int frames) {
    const PixelElement& pixels = *header.pixels;
    if (pixels.isOpen)
        return beginsWithItem(header) || (header.syntax && header.syntax->pixels != Pixels::Native);
    if (!header.syntax || header.syntax->pixels == Pixels::Native) return false;
    const bool isNativeSize =
        pixels.length * 8 / static_cast<std::uint64_t>(frames) >= nativeFrameBits(format);
    return beginsWithItem(header) || !isNativeSize;
}

std::optional<DecodeError> unreadableSyntax(const FileHeader& header) {
    if (!header.syntax) return std::nullopt;
    if (header.syntax->pixels == Pixels::Referenced) return faults::pictureElsewhere();
    if (header.syntax->pixels == Pixels::Video) return faults::unreadableCompression(header.syntax->name);
    return std::nullopt;
}

void openBareStream(const FileHeader& header, Picture& picture) {
    picture.isEncapsulated = true;
    picture.compression = header.syntax->compression;
    picture.announcedFrameCount = 1;
    picture.frames = std::make_unique<BareStream>(header);
}

void openEncapsulated(const FileHeader& header, std::optional<int> announced, Picture& picture) {
    picture.isEncapsulated = true;
    picture.hasDeflatedFrames = header.syntax && header.syntax->pixels == Pixels::DeflatedFrames;
    picture.compression = header.syntax ? header.syntax->compression : Compression::Unsupported;
    auto frames = std::make_unique<EncapsulatedFrames>(
        header.body, *header.pixels, header.elements,
        EncapsulatedFrames::Expectation{announced, (nativeFrameBits(picture.format) + 7) / 8,
                                        picture.compression, statesFrameCount(header.elements)});
    picture.announcedFrameCount = frames->announced();
    if (picture.compression == Compression::Unsupported) {
        const auto seen = sniffCompression(frames->firstBytes());
        if (seen) picture.compression = *seen;
        if (!seen)
            picture.error =
                faults::unreadableCompression(header.syntax ? header.syntax->name : header.syntaxUid);
    }
    picture.frames = std::move(frames);
}

/// Frames of native pixels whose header does not say how many they are: those that fill the data, one when
/// something else than whole frames is in them.
int framesFilling(const PixelElement& pixels, const PixelFormat& format) {
    constexpr std::uint64_t wordBits = 16;  // values are padded to whole words
    const std::uint64_t frameBits = nativeFrameBits(format), bits = pixels.length * 8;
    const bool mayShareChrominance =
        format.photometric == Photometric::YbrFull422 || format.photometric == Photometric::YbrPartial422;
    if (pixels.isOpen || mayShareChrominance || frameBits < wordBits || bits % frameBits >= wordBits)
        return 1;
    return static_cast<int>(std::clamp<std::uint64_t>(bits / frameBits, 1, INT_MAX));
}

void openNative(const FileHeader& header, std::optional<int> announced, Picture& picture) {
    picture.compression = Compression::None;
    if (!statesFrameCount(header.elements)) announced = framesFilling(*header.pixels, picture.format);
    auto frames = std::make_unique<NativeFrames>(header.body, *header.pixels, picture.format, announced,
                                                 header.hasBigEndianPixels());
    picture.announcedFrameCount = frames->announced();
    picture.frames = std::move(frames);
}

}  // namespace

Picture openPicture(const FileHeader& header) {
    Picture picture;
    const auto announced = statedFrameCount(header.elements);
    picture.announcedFrameCount = announced.value_or(1);
    if (header.syntax) picture.compression = header.syntax->compression;
    picture.error = unreadableSyntax(header);
    if (!picture.error && !header.pixels)
        picture.error = header.brokenOff ? *header.brokenOff : faults::noPicture(header.elements);
    if (picture.error) {
        if (!header.pixels) picture.announcedFrameCount = 0;
        return picture;
    }

    auto format = readPixelFormat(header.elements, header.pixels->tag);
    if (!format) {
        picture.error = format.error();
        return picture;
    }
    picture.format = format.value();
    const std::string loss = header.elements.string(tags::LossyImageCompression);
    picture.format.mayBeLossy =
        loss == "01" || (loss != "00" && !(header.syntax && header.syntax->isLossless));
    if (!isEncapsulated(header, picture.format, announced.value_or(1)))
        openNative(header, announced, picture);
    else if (header.pixels->isOpen || beginsWithItem(header))
        openEncapsulated(header, announced, picture);
    else
        openBareStream(header, picture);

    if (!picture.error) picture.frameCount = picture.frames->count();
    if (!picture.error && picture.frameCount == 0)
        picture.error =
            faults::cutOff(0, picture.announcedFrameCount, header.pixels->tag, header.pixels->offset);
    if (picture.error) picture.frames.reset();
    return picture;
}

}  // namespace cinedisc::dicom
