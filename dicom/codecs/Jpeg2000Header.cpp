#include "dicom/codecs/Jpeg2000Header.h"

#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/Jpeg2000Bounds.h"
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

bool startsWith(Bytes bytes, Bytes start) {
    return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

bool isCodeStream(Bytes bytes) {
    static constexpr std::uint8_t start[] = {0xFF, 0x4F, 0xFF, 0x51};
    return startsWith(bytes, start);
}

bool isFileFormat(Bytes bytes) {
    static constexpr std::uint8_t start[] = {0, 0, 0, 12, 'j', 'P', ' ', ' '};
    return startsWith(bytes, start);
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

Jpeg2000Grid readGrid(Bytes stream, std::size_t components) {
    constexpr std::size_t componentsFrom = 42;
    Jpeg2000Grid grid;
    std::size_t at = 8;
    for (std::uint64_t* number : {&grid.right, &grid.bottom, &grid.left, &grid.top, &grid.tileWidth,
                                  &grid.tileHeight, &grid.tileLeft, &grid.tileTop}) {
        *number = bigEndian32(stream, at);
        at += 4;
    }
    for (std::size_t i = 0; i < components; ++i)
        grid.components.push_back({stream[componentsFrom + 3 * i + 1], stream[componentsFrom + 3 * i + 2]});
    return grid;
}

}  // namespace

bool isJpeg2000(Bytes bytes) { return isCodeStream(bytes) || isFileFormat(bytes); }

Result<Jpeg2000Header> readJpeg2000Header(Bytes bytes, const PixelFormat& format) {
    constexpr std::size_t componentsAt = 40, componentSize = 3;
    Jpeg2000Header header;
    header.stream = isCodeStream(bytes) ? bytes : insideBoxes(bytes);
    const Bytes stream = header.stream;
    if (!isCodeStream(stream)) return broken("no JPEG 2000 code stream");
    if (stream.size() < componentsAt + 2) return cutOff();
    header.components = stream[componentsAt] << 8 | stream[componentsAt + 1];
    if (header.components != 1 && header.components != 3)
        return unsupported("JPEG 2000 with " + std::to_string(header.components) + " components");
    const auto components = static_cast<std::size_t>(header.components);
    if (stream.size() < componentsAt + 2 + componentSize * components) return cutOff();

    header.grid = readGrid(stream, components);
    const Jpeg2000Grid& grid = header.grid;
    const auto columns = static_cast<std::uint64_t>(format.columns),
               rows = static_cast<std::uint64_t>(format.rows);
    if (grid.right < grid.left || grid.bottom < grid.top || grid.right - grid.left != columns ||
        grid.bottom - grid.top != rows)
        return broken("the picture has another size than its header says");
    if (grid.tileWidth == 0 || grid.tileHeight == 0 || grid.tileLeft > grid.left || grid.tileTop > grid.top)
        return broken("impossible JPEG 2000 tiles");
    if (std::any_of(grid.components.begin(), grid.components.end(),
                    [](const Jpeg2000Grid::Steps& steps) { return steps.x == 0 || steps.y == 0; }))
        return broken("impossible JPEG 2000 components");
    const Result<std::uint64_t> overhead = jpeg2000Overhead(stream, grid);
    if (!overhead) return overhead.error();
    header.overhead = overhead.value();
    return header;
}

}  // namespace cinedisc::dicom::codecs
