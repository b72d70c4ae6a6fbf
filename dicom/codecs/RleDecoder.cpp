#include "dicom/codecs/RleDecoder.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/PackedBits.h"
#include "dicom/codecs/PixelCell.h"
#include "dicom/codecs/RleSegment.h"

#include <algorithm>
#include <array>
#include <optional>

namespace cinedisc::dicom::codecs {
namespace {

using Bytes = std::span<const std::uint8_t>;

std::uint32_t littleEndian32(const std::uint8_t* at) {
    return at[0] | at[1] << 8 | at[2] << 16 | static_cast<std::uint32_t>(at[3]) << 24;
}

/// Where the segments lie.
struct Segments {
    std::array<Bytes, rleMostSegments> segment;
};

Result<Segments> findSegments(Bytes bytes, std::size_t wanted) {
    if (bytes.size() < rleHeaderSize) return cutOff();
    const std::uint32_t announced = littleEndian32(bytes.data());
    if (announced > rleMostSegments || announced < wanted)
        return broken("the number of RLE segments does not fit the header");
    Segments found;
    for (std::size_t i = 0; i < wanted; ++i) {
        const std::size_t start = littleEndian32(&bytes[4 + 4 * i]);
        const std::size_t next = i + 1 < announced ? littleEndian32(&bytes[8 + 4 * i]) : bytes.size();
        if (start < rleHeaderSize) return broken("the RLE offsets contradict each other");
        if (start >= bytes.size()) return cutOff();
        if (next < start) return broken("the RLE offsets contradict each other");
        found.segment[i] = bytes.subspan(start, std::min(next, bytes.size()) - start);
    }
    return found;
}

/// Joins byte planes, the highest first, into cells.
template <typename Cell>
void joinPlanes(const std::uint8_t* planes, std::size_t distance, std::span<Cell> cells) {
    const std::size_t count = cells.size();
    if constexpr (sizeof(Cell) == 2) {
        for (std::size_t i = 0; i < count; ++i)
            cells[i] = static_cast<Cell>(planes[i] << 8 | planes[distance + i]);
    } else if constexpr (sizeof(Cell) == 4) {
        for (std::size_t i = 0; i < count; ++i)
            cells[i] = static_cast<Cell>(planes[i]) << 24 | static_cast<Cell>(planes[distance + i]) << 16 |
                       static_cast<Cell>(planes[2 * distance + i]) << 8 | planes[3 * distance + i];
    }
}

/// Expands the segments of one sample, one for each byte of a cell, into its cells. Wide cells are put
/// together in portions that stay in the nearest cache.
class SampleExpander {
  public:
    explicit SampleExpander(std::span<const Bytes> segments) : segments_(segments) {}

    /// False when a segment does not fill the cells.
    template <typename Cell>
    bool expand(std::span<Cell> cells) {
        std::array<RleSegment, sizeof(Cell)> readers;
        for (std::size_t i = 0; i < sizeof(Cell); ++i) readers[i] = RleSegment(segments_[i]);
        constexpr std::size_t portion = 8192;
        std::array<std::uint8_t, sizeof(Cell) == 1 ? 1 : portion * sizeof(Cell)> planes;
        for (std::size_t at = 0; at < cells.size(); at += portion) {
            const auto part = cells.subspan(at, std::min(portion, cells.size() - at));
            for (failed_ = 0; failed_ < sizeof(Cell); ++failed_) {
                std::uint8_t* const plane = planes.data() + failed_ * portion;
                if constexpr (sizeof(Cell) == 1) {
                    if (!readers[0].expand(part)) return false;
                } else if (!readers[failed_].expand({plane, part.size()})) {
                    return false;
                }
            }
            joinPlanes(planes.data(), portion, part);
            usedBits_ |= orOf(std::span<const Cell>(part));
        }
        // A last run may stick out by the byte that pads an odd length.
        failed_ = 0;
        return std::all_of(readers.begin(), readers.end(),
                           [](const RleSegment& r) { return r.unexpanded() <= 1; });
    }

    /// The segment that was at fault.
    Bytes failed() const { return segments_[failed_]; }
    std::uint32_t usedBits() const { return usedBits_; }

  private:
    std::span<const Bytes> segments_;
    std::size_t failed_ = 0;
    std::uint32_t usedBits_ = 0;
};

/// Single bits from bytes that hold eight of them; every plane begins with a new byte.
Frame::Samples unpackedPlanes(const std::vector<std::uint8_t>& packed, std::size_t pixels,
                              std::size_t samples) {
    const std::size_t planeBytes = packed.size() / samples;
    std::vector<std::uint8_t> bits;
    bits.reserve(pixels * samples);
    for (std::size_t sample = 0; sample < samples; ++sample) {
        const auto plane = std::as_bytes(std::span(packed)).subspan(sample * planeBytes, planeBytes);
        const auto unpacked = unpackedBits(plane, 0, pixels);
        bits.insert(bits.end(), unpacked.begin(), unpacked.end());
    }
    return bits;
}

}  // namespace

Result<Frame> decodeRle(std::span<const std::byte> bytes, const PixelFormat& format) {
    const bool singleBits = format.bitsAllocated == 1;
    if (!singleBits && format.bitsAllocated != 8 && format.bitsAllocated != 16 && format.bitsAllocated != 32)
        return unsupported("RLE with " + std::to_string(format.bitsAllocated) + " bits allocated");
    const Bytes data{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
    const auto samples = static_cast<std::size_t>(format.samplesPerPixel);
    const int cellWidth = pixelCell(format).allocated;
    const auto bytesInCell = static_cast<std::size_t>(cellWidth) / 8;
    const std::size_t pixels =
        static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns);
    const std::size_t cellsInPlane = singleBits ? (pixels + 7) / 8 : pixels;

    const Result<Segments> segments = findSegments(data, samples * bytesInCell);
    if (!segments) return segments.error();

    if (cellsInPlane * samples * bytesInCell > 64 * data.size())
        return cutOff();  // two bytes make 128 at most

    CodedPicture picture;
    picture.components = format.samplesPerPixel;
    picture.precision = cellWidth;
    picture.arrangement = Arrangement::Planar;
    picture.colour = colourSpaceOf(format.photometric);
    picture.cells = makeCells(cellWidth, format.isSigned && !singleBits, cellsInPlane * samples);

    const std::span<const Bytes> all(segments.value().segment);
    std::optional<DecodeError> error;
    std::uint32_t usedBits = 0;
    visitPatterns(picture.cells, [&](auto cells) {
        for (std::size_t sample = 0; sample < samples && !error; ++sample) {
            SampleExpander expander(all.subspan(sample * bytesInCell, bytesInCell));
            if (!expander.expand(cells.subspan(sample * cellsInPlane, cellsInPlane))) {
                const bool atEnd =
                    expander.failed().data() + expander.failed().size() == data.data() + data.size();
                error = atEnd ? cutOff() : broken("an RLE segment does not fit the picture");
            }
            usedBits |= expander.usedBits();
        }
    });
    if (error) return *error;
    if (singleBits) {
        picture.cells = unpackedPlanes(std::get<std::vector<std::uint8_t>>(picture.cells), pixels, samples);
        picture.precision = 1;
        picture.exactness = Exactness::Other;
    } else {
        picture.usedBits = usedBits;
    }
    return toFrame(std::move(picture), format);
}

}  // namespace cinedisc::dicom::codecs
