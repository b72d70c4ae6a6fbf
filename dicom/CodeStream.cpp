#include "dicom/CodeStream.h"

#include "dicom/Bytes.h"

#include <algorithm>
#include <array>

namespace cinedisc::dicom {

namespace {

constexpr unsigned startOfImage = 0xFFD8;
constexpr unsigned startOfJpegLsFrame = 0xFFF7;

bool isJpeg2000(std::span<const std::byte> bytes) {
    constexpr std::array<unsigned char, 4> codeStream{0xFF, 0x4F, 0xFF, 0x51};
    constexpr std::array<unsigned char, 8> fileFormat{0, 0, 0, 0x0C, 'j', 'P', ' ', ' '};
    const auto begins = [bytes](const auto& signature) {
        return bytes.size() >= signature.size() &&
               std::equal(signature.begin(), signature.end(), bytes.begin(),
                          [](unsigned char wanted, std::byte found) { return std::byte{wanted} == found; });
    };
    return begins(codeStream) || begins(fileFormat);
}

unsigned marker(std::span<const std::byte> bytes, std::size_t at) {
    return load16(&bytes[at], ByteOrder::Big);
}

bool isJpeg(std::span<const std::byte> bytes) {
    return bytes.size() >= 2 && marker(bytes, 0) == startOfImage;
}

bool isRle(std::span<const std::byte> bytes) {
    constexpr std::uint32_t headerSize = 64;
    constexpr std::uint32_t mostSegments = 15;
    if (bytes.size() < 12) return false;
    const std::uint32_t segments = load32(bytes.data()), first = load32(&bytes[4]),
                        second = load32(&bytes[8]);
    return segments >= 1 && segments <= mostSegments && first == headerSize &&
           (segments == 1 || second > first);
}

/// JPEG-LS streams are JPEG streams with a frame marker of their own, behind any number of other segments.
bool hasJpegLsFrame(std::span<const std::byte> bytes) {
    std::size_t at = 2;
    while (at + 4 <= bytes.size() && bytes[at] == std::byte{0xFF}) {
        const unsigned code = marker(bytes, at);
        if (code == startOfJpegLsFrame) return true;
        const bool isStartOfFrame =
            code >= 0xFFC0 && code <= 0xFFCF && code != 0xFFC4 && code != 0xFFC8 && code != 0xFFCC;
        if (isStartOfFrame || code == 0xFFDA) return false;
        at += code == 0xFFFF ? 1 : 2 + marker(bytes, at + 2);
    }
    return false;
}

}  // namespace

bool beginsCodeStream(std::span<const std::byte> bytes, Compression declared) {
    return isJpeg(bytes) || isJpeg2000(bytes) || (declared == Compression::Rle && isRle(bytes));
}

std::optional<Compression> sniffCompression(std::span<const std::byte> frame) {
    if (isJpeg2000(frame)) return Compression::Jpeg2000;
    if (isJpeg(frame)) return hasJpegLsFrame(frame) ? Compression::JpegLs : Compression::Jpeg;
    if (isRle(frame)) return Compression::Rle;
    return std::nullopt;
}

}  // namespace cinedisc::dicom
