#include "dicom/codecs/LosslessScan.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/JpegMarkers.h"
#include "dicom/codecs/LosslessBits.h"

#include <algorithm>
#include <vector>

namespace cinedisc::dicom::codecs {
namespace {

/// More bytes than this left over in a segment, zeros that fill it up aside, mean that the pixels came from
/// the wrong bits.
constexpr std::size_t mostBytesLeft = 16;

bool hasBytesLeft(const EntropyData& data, const EntropyData::Segment& segment, std::size_t bitsRead) {
    const std::uint8_t* const from = data.bytes() + segment.begin + bitsRead / 8;
    const std::uint8_t* end = data.bytes() + segment.end;
    while (end > from && end[-1] == 0) --end;
    return end - from > static_cast<std::ptrdiff_t>(mostBytesLeft);
}

/// The fourth and the sixth predictor say how a sample differs from the one above it by how its left
/// neighbour does. Those differences need the row above for nothing but the last step.
template <typename Sample>
void addRow(const Sample* __restrict above, Sample* __restrict row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) row[i] = static_cast<Sample>(row[i] + above[i]);
}

bool readDifferences(LosslessBits& bits, const LosslessScan& scan, std::uint16_t* differences) {
    const std::size_t step = scan.prediction.step;
    const bool oneTable =
        std::all_of(scan.tables.begin(), scan.tables.begin() + static_cast<std::ptrdiff_t>(step),
                    [&](const LosslessHuffman* table) { return table == scan.tables[0]; });
    if (oneTable) return bits.many(*scan.tables[0], differences, scan.rowLength);
    for (std::size_t i = 0; i < scan.rowLength; i += step)
        for (std::size_t k = 0; k < step; ++k)
            if (!bits.one(*scan.tables[k], differences[i + k])) return false;
    return true;
}

}  // namespace

template <typename Sample>
std::optional<DecodeError> LosslessScan::decode(const EntropyData& data, Sample* samples) const {
    const std::size_t rowsInSegment = restartRows ? restartRows : rows;
    const bool oneByOne = prediction.step == 1;
    const bool fromLeft = oneByOne && prediction.predictor == 1;
    const bool fromPlane = oneByOne && prediction.predictor == 4;
    const bool fromAbove = oneByOne && prediction.predictor == 6 && prediction.precision < 15;
    std::vector<std::uint16_t> differences(fromLeft || fromPlane ? 0 : rowLength);
    std::size_t row = 0;
    for (std::size_t index = 0; row < rows; ++index) {
        const EntropyData::Segment& segment = data.segments()[index];
        const std::size_t bitsInSegment = (segment.end - segment.begin) * 8;
        const std::size_t segmentEnd = std::min(rows, row + rowsInSegment);
        LosslessBits bits(data.bytes() + segment.begin);
        for (const std::size_t firstRow = row; row < segmentEnd; ++row) {
            Sample* const out = samples + row * rowLength;
            const Sample* const above = row > firstRow ? out - rowLength : nullptr;
            bool good;
            if (fromLeft || ((fromPlane || fromAbove) && !above)) {
                good = bits.running(*tables[0], out, rowLength, above ? above[0] : prediction.origin);
            } else if (fromPlane) {
                good = bits.running(*tables[0], out, rowLength, 0);
                if (good) addRow(above, out, rowLength);
            } else if (fromAbove) {
                good = bits.halving(*tables[0], out, rowLength);
                if (good) addRow(above, out, rowLength);
            } else {
                good = readDifferences(bits, *this, differences.data());
                if (good) prediction.restore(differences.data(), above, out, rowLength);
            }
            if (bits.position() > bitsInSegment)
                return segment.endedBy == 0 || segment.endedBy == marker::eoi
                           ? cutOff()
                           : broken("a JPEG segment ends early");
            if (!good) return broken("an impossible JPEG code");
            if (sampleBits && orOf(std::span<const Sample>(out, rowLength)) >> sampleBits != 0)
                return broken("JPEG samples beyond their precision");
        }
        if (hasBytesLeft(data, segment, bits.position())) return broken("JPEG data are left over");
        if (row < rows) {
            if (index + 1 >= data.segments().size()) return cutOff();
            if (segment.endedBy != marker::rst0 + index % 8)
                return broken("a JPEG restart marker is missing");
        }
    }
    return std::nullopt;
}

template std::optional<DecodeError> LosslessScan::decode(const EntropyData&, std::uint8_t*) const;
template std::optional<DecodeError> LosslessScan::decode(const EntropyData&, std::uint16_t*) const;

}  // namespace cinedisc::dicom::codecs
