#include "dicom/codecs/JpegLsDecoder.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/JpegLsScan.h"

#include <algorithm>
#include <cstring>

namespace cinedisc::dicom::codecs {
namespace {

using Bytes = std::span<const std::uint8_t>;

/// Decodes the scans of one stream, one marker after the other.
class JpegLsStream {
  public:
    JpegLsStream(Bytes stream, const JpegHeader& header, const PixelFormat& format)
        : stream_(stream), header_(header), pixels_(rows() * columns()) {
        picture_.components = header.componentCount;
        picture_.precision = header.precision;
        picture_.colour = colourSpaceOf(format.photometric);
        picture_.cells =
            makeCells(header.precision, format.isSigned && components() == 1, pixels_ * components());
    }

    Result<CodedPicture> decode() {
        JpegMarkerReader reader(stream_);
        while (decodedComponents_ < components()) {
            const auto next = reader.next();
            if (!next || next->code == marker::eoi) return cutOff();
            std::optional<DecodeError> error;
            if (next->code == marker::lse) error = readPreset(next->payload);
            if (next->code == marker::dri) error = readRestartInterval(next->payload);
            if (next->code == marker::app8 && next->payload.size() >= 5 && next->payload[4] != 0 &&
                std::memcmp(next->payload.data(), "mrfx", 4) == 0)
                return unsupported("JPEG-LS with a colour transform");
            if (next->code == marker::sos) error = readScan(next->payload, reader);
            if (error) return *error;
        }
        return std::move(picture_);
    }

  private:
    enum Interleave { none, byLine, bySample };

    std::size_t components() const { return static_cast<std::size_t>(header_.componentCount); }
    std::size_t columns() const { return static_cast<std::size_t>(header_.columns); }
    std::size_t rows() const { return static_cast<std::size_t>(header_.rows); }

    std::optional<DecodeError> readPreset(Bytes payload) {
        const auto read = JpegLsPreset::read(payload, preset_);
        if (!read) return broken("JPEG-LS parameters are too short");
        preset_ = *read;
        return std::nullopt;
    }

    static std::optional<DecodeError> readRestartInterval(Bytes payload) {
        if (std::any_of(payload.begin(), payload.end(), [](std::uint8_t byte) { return byte != 0; }))
            return unsupported("JPEG-LS with restart markers");
        return std::nullopt;
    }

    std::optional<DecodeError> readScan(Bytes payload, JpegMarkerReader& reader) {
        const std::size_t count = payload.empty() ? 0 : payload[0];
        if (payload.size() < 4 + 2 * count) return broken("a JPEG-LS scan header is too short");
        const int near = payload[1 + 2 * count], interleave = payload[2 + 2 * count];
        if (count != (components() == 1 || interleave == none ? 1 : components()) || interleave > bySample)
            return broken("a JPEG-LS scan holds other components than its header says");
        for (std::size_t i = 0; i < count; ++i)
            if (payload[1 + 2 * i] != header_.components[decodedComponents_ + i].id)
                return broken("a JPEG-LS scan holds other components than its header says");
        const auto parameters = JpegLsParameters::make(header_.precision, near, preset_);
        if (!parameters) return broken("impossible JPEG-LS parameters");

        JpegLsScan scan(*parameters, stream_.subspan(reader.position()));
        const std::size_t step = count > 1 && interleave == bySample ? count : 1;
        if (!visitPatterns(picture_.cells, [&](auto cells) { return decodeLines(scan, cells, count, step); }))
            return scan.bits().ranOut() ? cutOff() : broken("JPEG-LS data that contradict themselves");
        reader.moveTo(reader.position() + scan.bits().position());
        if (near != 0) picture_.exactness = Exactness::Near;
        if (count < components()) picture_.arrangement = Arrangement::Planar;
        decodedComponents_ += count;
        return std::nullopt;
    }

    /// Decodes a scan of `count` components, `step` of them together in a line.
    template <typename Cell>
    bool decodeLines(JpegLsScan& scan, std::span<Cell> cells, std::size_t count, std::size_t step) const {
        std::vector<JpegLsLines> lines(count / step, JpegLsLines(columns(), step));
        Cell* out = cells.data() + decodedComponents_ * pixels_;
        for (std::size_t row = 0; row < rows(); ++row, out += columns() * count) {
            for (std::size_t i = 0; i < lines.size(); ++i) {
                if (!scan.decodeLine(lines[i])) return false;
                const auto samples = lines[i].samples();
                for (std::size_t k = 0; k < samples.size(); ++k)
                    out[k * lines.size() + i] = static_cast<Cell>(samples[k]);
            }
        }
        return true;
    }

    Bytes stream_;
    const JpegHeader& header_;
    std::size_t pixels_;
    CodedPicture picture_;
    JpegLsPreset preset_;
    std::size_t decodedComponents_ = 0;
};

}  // namespace

Result<CodedPicture> decodeJpegLs(Bytes stream, const JpegHeader& header, const PixelFormat& format) {
    if (header.precision < 2 || header.precision > 16) return broken("an impossible JPEG-LS precision");
    if (header.isSubsampled()) return unsupported("JPEG-LS with subsampled colour");
    return JpegLsStream(stream, header, format).decode();
}

}  // namespace cinedisc::dicom::codecs
