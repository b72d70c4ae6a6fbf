#include "dicom/codecs/LosslessJpegDecoder.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/LosslessScan.h"

#include <algorithm>
#include <memory>

namespace cinedisc::dicom::codecs {
namespace {

using Bytes = std::span<const std::uint8_t>;

/// Decodes the scans of one stream, one marker after the other.
class LosslessStream {
  public:
    LosslessStream(Bytes stream, const JpegHeader& header, const PixelFormat& format)
        : stream_(stream), header_(header), rows_(static_cast<std::size_t>(format.rows)) {}

    Result<CodedPicture> decode() {
        picture_.components = header_.componentCount;
        picture_.precision = header_.precision;
        picture_.colour = colourSpaceOf(Photometric::Unknown);
        picture_.cells = makeCells(header_.precision, isSigned_, samplesInPlane() * components());

        JpegMarkerReader reader(stream_);
        while (decodedComponents_ < components()) {
            const auto next = reader.next();
            if (!next || next->code == marker::eoi) return cutOff();
            std::optional<DecodeError> error;
            if (next->code == marker::dht) error = readTables(next->payload);
            if (next->code == marker::dri) error = readRestartInterval(next->payload);
            if (next->code == marker::sos) {
                error = readScan(next->payload, reader.position());
                reader.moveTo(reader.position() + scanLength_);
            }
            if (error) return *error;
        }
        return std::move(picture_);
    }

    void expectSigned(bool isSigned) { isSigned_ = isSigned; }

  private:
    /// Where a code table stands in the stream. Building one takes a while: only those that a scan
    /// names are built.
    struct TableDefinition {
        Bytes counts, symbols;
    };

    std::size_t components() const { return static_cast<std::size_t>(header_.componentCount); }
    std::size_t columns() const { return static_cast<std::size_t>(header_.columns); }
    std::size_t samplesInPlane() const { return rows_ * columns(); }

    std::optional<DecodeError> readTables(Bytes payload) {
        while (!payload.empty()) {
            if (payload.size() < 17) return broken("a JPEG code table is too short");
            const unsigned kind = payload[0] >> 4, index = payload[0] & 15u;
            const auto counts = payload.subspan<1, 16>();
            std::size_t symbols = 0;
            for (const std::uint8_t count : counts) symbols += count;
            if (index > 3 || payload.size() < 17 + symbols) return broken("a JPEG code table is too short");
            if (kind == 0) definitions_[index] = {counts, payload.subspan(17, symbols)};
            payload = payload.subspan(17 + symbols);
        }
        return std::nullopt;
    }

    /// Null when it is missing or impossible.
    const LosslessHuffman* tableOf(std::size_t index) {
        const TableDefinition& wanted = definitions_[index];
        if (wanted.counts.empty()) return nullptr;
        if (built_[index] != wanted.counts.data()) {
            tables_[index] = LosslessHuffman::fromTable(wanted.counts.first<16>(), wanted.symbols);
            built_[index] = wanted.counts.data();
        }
        return tables_[index].get();
    }

    std::optional<DecodeError> readRestartInterval(Bytes payload) {
        if (payload.size() < 2) return broken("a JPEG restart interval is too short");
        const std::size_t interval = static_cast<std::size_t>(payload[0] << 8 | payload[1]);
        if (interval % columns() != 0) return broken("a JPEG restart interval ends within a row");
        restartRows_ = interval / columns();
        return std::nullopt;
    }

    std::optional<DecodeError> readScan(Bytes payload, std::size_t dataAt) {
        const std::size_t count = payload.empty() ? 0 : payload[0];
        if (count < 1 || count > 4 || payload.size() < 4 + 2 * count)
            return broken("a JPEG scan header is too short");
        if (count != 1 && count != components()) return unsupported("JPEG lossless with mixed scans");
        LosslessScan scan;
        scan.rows = rows_;
        scan.rowLength = columns() * count;
        scan.restartRows = restartRows_;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t component = decodedComponents_ + i;
            if (component >= components() || payload[1 + 2 * i] != header_.components[component].id)
                return broken("a JPEG scan holds other components than its header says");
            const LosslessHuffman* const table = tableOf(payload[2 + 2 * i] >> 4 & 3);
            if (!table) return broken("a JPEG code table is missing or impossible");
            scan.tables[i] = table;
        }
        const int predictor = payload[1 + 2 * count];
        const int shift = payload[3 + 2 * count] & 15;
        if (predictor < 1 || predictor > 7 || shift >= header_.precision)
            return broken("an impossible JPEG prediction");
        // Some encoders hand signed cells over as they are, sign bits and all.
        if (!isSigned_) scan.sampleBits = static_cast<unsigned>(header_.precision - shift);
        scan.prediction = {predictor, count, 1u << (header_.precision - shift - 1),
                           header_.precision - shift};

        const EntropyData data(stream_.subspan(dataAt), scan.padding(), rows_);
        scanLength_ = data.codedLength();
        std::optional<DecodeError> error;
        const std::size_t offset = decodedComponents_ * samplesInPlane();
        const auto decodeInto = [&](auto cells) {
            error = scan.decode(data, cells.data() + offset);
            if (shift > 0)
                for (auto& cell : cells.subspan(offset, scan.rows * scan.rowLength))
                    cell = static_cast<typename decltype(cells)::value_type>(cell << shift);
        };
        if (header_.precision <= 8)
            decodeInto(patterns<std::uint8_t>(picture_.cells));
        else
            decodeInto(patterns<std::uint16_t>(picture_.cells));
        if (count < components()) picture_.arrangement = Arrangement::Planar;
        decodedComponents_ += count;
        return error;
    }

    Bytes stream_;
    const JpegHeader& header_;
    std::size_t rows_;
    bool isSigned_ = false;
    CodedPicture picture_;
    std::array<TableDefinition, 4> definitions_;
    std::array<const std::uint8_t*, 4> built_{};  ///< the definitions that the tables were built of
    std::array<std::unique_ptr<const LosslessHuffman>, 4> tables_;
    std::size_t restartRows_ = 0;
    std::size_t decodedComponents_ = 0;
    std::size_t scanLength_ = 0;
};

}  // namespace

Result<CodedPicture> decodeLosslessJpeg(Bytes stream, const JpegHeader& header, const PixelFormat& format) {
    if (header.precision < 2 || header.precision > 16) return broken("an impossible JPEG precision");
    if (header.componentCount > 1 && header.isSubsampled())
        return unsupported("JPEG lossless with subsampled colour");
    const auto samples = static_cast<std::uint64_t>(format.rows) *
                         static_cast<std::uint64_t>(format.columns) *
                         static_cast<std::uint64_t>(header.componentCount);
    if (samples > std::uint64_t{8} * stream.size()) return cutOff();  // no code is shorter than a bit
    LosslessStream decoder(stream, header, format);
    decoder.expectSigned(format.isSigned && header.componentCount == 1);
    Result<CodedPicture> picture = decoder.decode();
    if (picture) picture.value().colour = colourSpaceOf(format.photometric);
    return picture;
}

}  // namespace cinedisc::dicom::codecs
