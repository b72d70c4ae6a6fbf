#include "dicom/CodeStream.h"

#include "dicom/Bytes.h"
#include "dicom/codecs/Jpeg2000Header.h"
#include "dicom/codecs/JpegMarkers.h"
#include "dicom/codecs/RleDecoder.h"

namespace cinedisc::dicom {

namespace {

using namespace codecs;

std::span<const std::uint8_t> octets(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

bool isRle(std::span<const std::byte> bytes) {
    if (bytes.size() < 12) return false;
    const std::uint32_t segments = load32(bytes.data()), first = load32(&bytes[4]),
                        second = load32(&bytes[8]);
    return segments >= 1 && segments <= rleMostSegments && first == rleHeaderSize &&
           (segments == 1 || second > first);
}

}  // namespace

bool beginsCodeStream(std::span<const std::byte> bytes, Compression declared) {
    return isJpeg(octets(bytes)) || isJpeg2000(octets(bytes)) ||
           (declared == Compression::Rle && isRle(bytes));
}

std::optional<Compression> sniffCompression(std::span<const std::byte> frame) {
    if (isJpeg2000(octets(frame))) return Compression::Jpeg2000;
    if (isJpeg(octets(frame)))
        return startOfFrameIn(octets(frame)) == marker::sof55 ? Compression::JpegLs : Compression::Jpeg;
    if (isRle(frame)) return Compression::Rle;
    return std::nullopt;
}

}  // namespace cinedisc::dicom
