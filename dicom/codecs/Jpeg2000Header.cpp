#include "dicom/codecs/Jpeg2000Header.h"

#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/PixelCell.h"

#include <algorithm>
#include <string>

namespace cinedisc::dicom::codecs {
namespace {

using Bytes = std::span<const std::uint8_t>;

std::uint32_t bigEndian32(Bytes bytes, std::size_t at) {
    return static_cast<std::uint32_t>(bytes[at]) << 24 | static_cast<std::uint32_t>(bytes[at + 1]) << 16 |
           static_cast<std::uint32_t>(bytes[at + 2]) << 8 | bytes[at + 3];
}

bool isCodeStream(Bytes bytes) {
    return bytes.size() >= 4 && bytes[0] == 0xFF && bytes[1] == 0x4F && bytes[2] == 0xFF && bytes[3] == 0x51;
}

/// The content of the code stream box, empty when there is none (ITU-T T.800 I.4).
Bytes insideBoxes(Bytes bytes) {
    constexpr std::uint32_t codeStreamBox = 0x6A703263;
    while (bytes.size() >= 8) {
        std::uint64_t length = bigEndian32(bytes, 0);
        std::size_t headerSize = 8;
        if (length == 1) {
            if (bytes.size() < 16) return {};
            length = static_cast<std::uint64_t>(bigEndian32(bytes, 8)) << 32 | bigEndian32(bytes, 12);
            headerSize = 16;
        }
        if (length == 0 || length > bytes.size()) length = bytes.size();
        if (length < headerSize) return {};
        if (bigEndian32(bytes, 4) == codeStreamBox)
            return bytes.subspan(headerSize, static_cast<std::size_t>(length) - headerSize);
        bytes = bytes.subspan(static_cast<std::size_t>(length));
    }
    return {};
}

std::uint64_t partsIn(std::uint64_t length, std::uint64_t part) { return (length + part - 1) / part; }

}  // namespace

Result<Jpeg2000Header> readJpeg2000Header(Bytes bytes, const PixelFormat& format) {
    constexpr std::size_t componentsAt = 40, smallestTilePart = 14;
    Jpeg2000Header header;
    header.stream = isCodeStream(bytes) ? bytes : insideBoxes(bytes);
    const Bytes stream = header.stream;
    if (!isCodeStream(stream)) return broken("no JPEG 2000 code stream");
    if (stream.size() < componentsAt + 2) return cutOff();

    const std::uint64_t right = bigEndian32(stream, 8), bottom = bigEndian32(stream, 12);
    const std::uint64_t left = bigEndian32(stream, 16), top = bigEndian32(stream, 20);
    const std::uint64_t tileWidth = bigEndian32(stream, 24), tileHeight = bigEndian32(stream, 28);
    const std::uint64_t tileLeft = bigEndian32(stream, 32), tileTop = bigEndian32(stream, 36);
    header.components = stream[componentsAt] << 8 | stream[componentsAt + 1];

    const auto columns = static_cast<std::uint64_t>(format.columns),
               rows = static_cast<std::uint64_t>(format.rows);
    if (right < left || bottom < top || right - left != columns || bottom - top != rows)
        return broken("the picture has another size than its header says");
    if (tileWidth == 0 || tileHeight == 0 || tileLeft > left || tileTop > top)
        return broken("impossible JPEG 2000 tiles");
    if (partsIn(right - tileLeft, tileWidth) * partsIn(bottom - tileTop, tileHeight) >
        stream.size() / smallestTilePart)
        return broken("more JPEG 2000 tiles than the data can hold");
    if (header.components != 1 && header.components != 3)
        return unsupported("JPEG 2000 with " + std::to_string(header.components) + " components");
    if (columns * rows * static_cast<std::uint64_t>(header.components) * sizeof(std::int32_t) >
        maximumFrameBytes)
        return tooLarge();
    return header;
}

}  // namespace cinedisc::dicom::codecs
