#include "dicom/codecs/JpegBounds.h"

#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/PixelCell.h"

namespace cinedisc::dicom::codecs {
namespace {

struct Scans {
    std::uint64_t count = 0;
    bool areSeveral = false;  ///< at least two are needed for a picture
};

/// Scans up to the end marker. One that holds all components of a sequential picture is the only one.
Scans scansOf(std::span<const std::uint8_t> stream, const JpegHeader& header) {
    Scans scans;
    JpegMarkerReader reader(stream);
    while (const auto next = reader.next()) {
        if (next->code == marker::eoi) break;
        if (next->code != marker::sos) continue;
        ++scans.count;
        const bool holdsAll = !next->payload.empty() && next->payload[0] == header.componentCount;
        scans.areSeveral = scans.areSeveral || header.startOfFrame == marker::sof2 || !holdsAll;
        if (!scans.areSeveral) break;
    }
    return scans;
}

}  // namespace

std::optional<DecodeError> jpegWorkError(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                         const PixelFormat& format) {
    // A picture of 12 bits and three components that is refined bit by bit has some fifty scans.
    constexpr std::uint64_t mostScans = 100, mostBlocksVisited = std::uint64_t{1} << 26;
    constexpr std::uint64_t coefficientBytes = 2;
    const auto rows = static_cast<std::uint64_t>(format.rows),
               columns = static_cast<std::uint64_t>(format.columns);
    const auto components = static_cast<std::uint64_t>(header.componentCount);
    const std::uint64_t samples = rows * columns * components;
    const std::uint64_t blocks = (rows + 7) / 8 * ((columns + 7) / 8) * components;
    const std::uint64_t sampleBytes = header.precision > 8 ? 2 : 1;

    const Scans scans = scansOf(stream, header);
    if (scans.count > mostScans || scans.count * blocks > mostBlocksVisited)
        return broken("more JPEG scans than a picture can need");
    // The decoder for 12 bits gets a copy of the stream; coefficients are kept until the last scan has come.
    const std::uint64_t needed =
        samples * (sampleBytes + (scans.areSeveral ? coefficientBytes : 0)) + stream.size() * sampleBytes;
    if (needed > maximumDecodingBytes) return tooLarge();
    return std::nullopt;
}

}  // namespace cinedisc::dicom::codecs
