#include "dicom/NativeFrames.h"

#include "dicom/Faults.h"
#include "dicom/PixelDescription.h"

#include <algorithm>
#include <climits>

namespace cinedisc::dicom {

namespace {

/// Whether two pixels share their chrominances is not certain from the photometric interpretation: the length
/// tells.
std::uint64_t frameBitsOf(const PixelFormat& format, std::uint64_t bytes, int frames) {
    const std::uint64_t full = nativeFrameBits(format);
    const bool isSubsampled =
        format.photometric == Photometric::YbrFull422 || format.photometric == Photometric::YbrPartial422;
    if (!isSubsampled || bytes / static_cast<std::uint64_t>(frames) * 8 >= full) return full;
    return subsampledFrameBits(format);
}

}  // namespace

NativeFrames::NativeFrames(std::shared_ptr<const ByteSource> source, const PixelElement& pixels,
                           const PixelFormat& format, std::optional<int> announced, bool bigEndian)
    : source_(std::move(source)), pixels_(pixels) {
    frameBits_ = frameBitsOf(format, pixels.length, announced.value_or(1));
    swapsWords_ = bigEndian && pixels.valueRepresentation == vr("OW") && format.bitsAllocated <= 8;
    const auto framesIn = [this](std::uint64_t bytes) {
        return static_cast<int>(std::min<std::uint64_t>(bytes * 8 / frameBits_, INT_MAX));
    };
    announced_ = announced.value_or(std::max(framesIn(pixels.length), 1));
    const std::uint64_t there = source_->size() - std::min(pixels.offset, source_->size());
    count_ = std::min(announced_, framesIn(std::min(pixels.length, there)));
}

Result<FrameBytes> NativeFrames::read(int frame) const {
    const std::uint64_t firstBit = frameBits_ * static_cast<std::uint64_t>(frame);
    std::uint64_t from = firstBit / 8, to = (firstBit + frameBits_ + 7) / 8;
    FrameBytes bytes;
    bytes.firstBit = static_cast<int>(firstBit % 8);
    bytes.length = static_cast<std::size_t>(to - from);
    if (swapsWords_) {
        bytes.begin = from % 2;
        from -= bytes.begin;
        to += to % 2;
    }
    bytes.storage.resize(static_cast<std::size_t>(to - from));
    const std::size_t got = source_->readAt(pixels_.offset + from, bytes.storage);
    if (got < bytes.begin + bytes.length) return faults::cannotRead(pixels_.tag, pixels_.offset + from + got);
    if (swapsWords_)
        for (std::size_t at = 0; at + 1 < bytes.storage.size(); at += 2)
            std::swap(bytes.storage[at], bytes.storage[at + 1]);
    return bytes;
}

}  // namespace cinedisc::dicom
