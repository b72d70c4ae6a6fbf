#include "dicom/codecs/NativeDecoder.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/PackedBits.h"
#include "dicom/codecs/PixelCell.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace cinedisc::dicom::codecs {
namespace {

template <typename Cell>
void swapBytes(std::span<Cell> cells) {
    for (Cell& cell : cells) {
        auto bytes = std::as_writable_bytes(std::span(&cell, 1));
        std::reverse(bytes.begin(), bytes.end());
    }
}

/// Fills `into` with cells in the machine's byte order. `bytes` holds them all.
template <typename Cell>
void copyCells(std::span<const std::byte> bytes, std::span<Cell> into, bool bigEndian) {
    std::memcpy(into.data(), bytes.data(), into.size_bytes());
    if (sizeof(Cell) > 1 && bigEndian != (std::endian::native == std::endian::big)) swapBytes(into);
}

/// The same, and returns all cells or'ed together. In portions that stay in the nearest cache.
template <typename Cell>
std::uint32_t copyAndOr(std::span<const std::byte> bytes, std::span<Cell> into, bool bigEndian) {
    constexpr std::size_t portion = 8192;
    std::uint32_t all = 0;
    for (std::size_t at = 0; at < into.size(); at += portion) {
        const auto part = into.subspan(at, std::min(portion, into.size() - at));
        copyCells(bytes.subspan(at * sizeof(Cell)), part, bigEndian);
        all |= orOf(std::span<const Cell>(part));
    }
    return all;
}

template <typename Cell>
Result<Frame> floatingPoint(std::span<const std::byte> bytes, const PixelFormat& format, bool bigEndian) {
    Frame frame{format.rows, format.columns, 1, {}};
    if (bytes.size() / sizeof(Cell) < frame.pixelCount()) return cutOff();
    std::vector<Cell> values(frame.pixelCount());
    copyCells(bytes, std::span(values), bigEndian);
    frame.samples = std::move(values);
    return frame;
}

/// Two luminances and the chrominances they share, as triples. Rows hold whole pairs unless the bytes only
/// suffice for pairs that run on from row to row.
bool expandPairs(std::span<const std::byte> bytes, const PixelFormat& format,
                 std::vector<std::uint8_t>& triples) {
    const auto columns = static_cast<std::size_t>(format.columns);
    const std::size_t pixels = columns * static_cast<std::size_t>(format.rows);
    const std::size_t pairsInRow = (columns + 1) / 2;
    const bool wholeRows = bytes.size() >= pairsInRow * 4 * static_cast<std::size_t>(format.rows);
    if (!wholeRows && bytes.size() < (pixels + 1) / 2 * 4) return false;

    const auto* in = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const std::size_t runLength = wholeRows ? columns : pixels;
    triples.resize(pixels * 3);
    std::uint8_t* out = triples.data();
    for (std::size_t start = 0; start < pixels; start += runLength) {
        for (std::size_t i = 0; i < runLength; i += 2, in += 4) {
            for (std::size_t k = 0; k < std::min<std::size_t>(2, runLength - i); ++k, out += 3) {
                out[0] = in[k];
                out[1] = in[2];
                out[2] = in[3];
            }
        }
    }
    return true;
}

bool isSubsampled(std::span<const std::byte> bytes, const PixelFormat& format) {
    if (format.samplesPerPixel != 3) return false;
    if (format.photometric != Photometric::YbrFull422 && format.photometric != Photometric::YbrPartial422)
        return false;
    const std::size_t full =
        static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns) * 3;
    return format.bitsAllocated == 8 && bytes.size() < full;
}

}  // namespace

Result<Frame> decodeNative(std::span<const std::byte> bytes, const PixelFormat& format, bool bigEndian,
                           int firstBit) {
    if (format.sampleKind == SampleKind::Float) return floatingPoint<float>(bytes, format, bigEndian);
    if (format.sampleKind == SampleKind::Double) return floatingPoint<double>(bytes, format, bigEndian);
    if (format.samplesPerPixel == 3 && format.photometric == Photometric::YbrPartial420)
        return unsupported("uncompressed YBR_PARTIAL_420");

    const std::size_t samples = static_cast<std::size_t>(format.rows) *
                                static_cast<std::size_t>(format.columns) *
                                static_cast<std::size_t>(format.samplesPerPixel);
    CodedPicture picture;
    picture.components = format.samplesPerPixel;
    picture.precision = pixelCell(format).allocated;
    picture.arrangement = format.planar ? Arrangement::Planar : Arrangement::Interleaved;
    picture.colour = colourSpaceOf(format.photometric);

    if (format.bitsAllocated == 1) {
        if (firstBit < 0 || firstBit > 7 ||
            bytes.size() < (samples + static_cast<std::size_t>(firstBit) + 7) / 8)
            return cutOff();
        picture.precision = 1;
        picture.exactness = Exactness::Other;
        picture.cells = unpackedBits(bytes, firstBit, samples);
    } else if (isSubsampled(bytes, format)) {
        std::vector<std::uint8_t> triples;
        if (!expandPairs(bytes, format, triples)) return cutOff();
        picture.arrangement = Arrangement::Interleaved;
        picture.cells = std::move(triples);
    } else {
        if (format.bitsAllocated != 8 && format.bitsAllocated != 16 && format.bitsAllocated != 32)
            return unsupported(std::to_string(format.bitsAllocated) + " bits allocated");
        if (bytes.size() / static_cast<std::size_t>(picture.precision / 8) < samples) return cutOff();
        picture.cells = makeCells(picture.precision, format.isSigned, samples);
        picture.usedBits =
            visitPatterns(picture.cells, [&](auto cells) { return copyAndOr(bytes, cells, bigEndian); });
    }
    return toFrame(std::move(picture), format);
}

}  // namespace cinedisc::dicom::codecs
