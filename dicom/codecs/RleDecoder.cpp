#include "dicom/codecs/RleDecoder.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/PixelCell.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace cinedisc::dicom::codecs {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t headerSize = 64;
constexpr std::size_t mostSegments = 15;

std::uint32_t littleEndian32(const std::uint8_t* at) {
    return at[0] | at[1] << 8 | at[2] << 16 | static_cast<std::uint32_t>(at[3]) << 24;
}

/// Where the segments lie.
struct Segments {
    std::array<Bytes, mostSegments> segment;
};

Result<Segments> findSegments(Bytes bytes, std::size_t wanted) {
    if (bytes.size() < headerSize) return cutOff();
    const std::uint32_t announced = littleEndian32(bytes.data());
    if (announced > mostSegments || announced < wanted)
        return broken("the number of RLE segments does not fit the header");
    Segments found;
    for (std::size_t i = 0; i < wanted; ++i) {
        const std::size_t start = littleEndian32(&bytes[4 + 4 * i]);
        const std::size_t next = i + 1 < announced ? littleEndian32(&bytes[8 + 4 * i]) : bytes.size();
        if (start < headerSize || next < start) return broken("the RLE offsets contradict each other");
        if (start >= bytes.size()) return cutOff();
        found.segment[i] = bytes.subspan(start, std::min(next, bytes.size()) - start);
    }
    return found;
}

/// Expands one segment; true when it fills `plane`. A last run may stick out by the byte that pads an odd
/// length.
bool expand(Bytes segment, std::span<std::uint8_t> plane) {
    const std::uint8_t* in = segment.data();
    const std::uint8_t* const inEnd = in + segment.size();
    std::uint8_t* out = plane.data();
    std::uint8_t* const outEnd = out + plane.size();
    while (out < outEnd) {
        if (inEnd - in < 2) return false;
        const unsigned control = *in++;
        if (control == 128) continue;
        const std::ptrdiff_t length = control < 128 ? static_cast<std::ptrdiff_t>(control) + 1
                                                    : 257 - static_cast<std::ptrdiff_t>(control);
        std::ptrdiff_t wanted = length;
        if (length > outEnd - out) {
            if (length > outEnd - out + 1) return false;
            wanted = outEnd - out;
        }
        if (control < 128) {
            if (inEnd - in < wanted) return false;
            std::memcpy(out, in, static_cast<std::size_t>(wanted));
            in += std::min(length, inEnd - in);
        } else {
            std::memset(out, *in++, static_cast<std::size_t>(wanted));
        }
        out += wanted;
    }
    return true;
}

/// Joins byte planes, the highest first, into cells.
template <typename Cell>
void joinPlanes(const std::uint8_t* planes, std::span<Cell> cells) {
    const std::size_t count = cells.size();
    if constexpr (sizeof(Cell) == 2) {
        for (std::size_t i = 0; i < count; ++i)
            cells[i] = static_cast<Cell>(planes[i] << 8 | planes[count + i]);
    } else if constexpr (sizeof(Cell) == 4) {
        for (std::size_t i = 0; i < count; ++i)
            cells[i] = static_cast<Cell>(planes[i]) << 24 | static_cast<Cell>(planes[count + i]) << 16 |
                       static_cast<Cell>(planes[2 * count + i]) << 8 | planes[3 * count + i];
    }
}

}  // namespace

Result<Frame> decodeRle(std::span<const std::byte> bytes, const PixelFormat& format) {
    if (format.bitsAllocated != 8 && format.bitsAllocated != 16 && format.bitsAllocated != 32)
        return unsupported("RLE with " + std::to_string(format.bitsAllocated) + " bits allocated");
    const Bytes data{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
    const auto samples = static_cast<std::size_t>(format.samplesPerPixel);
    const auto bytesInCell = static_cast<std::size_t>(format.bitsAllocated) / 8;
    const std::size_t pixels =
        static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns);

    const Result<Segments> segments = findSegments(data, samples * bytesInCell);
    if (!segments) return segments.error();

    CodedPicture picture;
    picture.components = format.samplesPerPixel;
    picture.precision = format.bitsAllocated;
    picture.arrangement = Arrangement::Planar;
    picture.colour = colourSpaceOf(format.photometric);
    picture.cells = makeCells(format.bitsAllocated, format.isSigned, pixels * samples);

    std::vector<std::uint8_t> planes(bytesInCell > 1 ? pixels * bytesInCell : 0);
    std::optional<DecodeError> error;
    visitPatterns(picture.cells, [&](auto cells) {
        for (std::size_t sample = 0; sample < samples && !error; ++sample) {
            const auto part = cells.subspan(sample * pixels, pixels);
            for (std::size_t byte = 0; byte < bytesInCell; ++byte) {
                const Bytes segment = segments.value().segment[sample * bytesInCell + byte];
                std::span<std::uint8_t> plane(planes);
                if constexpr (sizeof(part[0]) == 1)
                    plane = part;
                else
                    plane = plane.subspan(byte * pixels, pixels);
                if (!expand(segment, plane)) {
                    const bool atEnd = segment.data() + segment.size() == data.data() + data.size();
                    error = atEnd ? cutOff() : broken("an RLE segment does not fill the picture");
                    return;
                }
            }
            joinPlanes(planes.data(), part);
        }
    });
    if (error) return *error;
    return toFrame(std::move(picture), format);
}

}  // namespace cinedisc::dicom::codecs
