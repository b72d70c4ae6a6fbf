#include "dicom/codecs/Jpeg2000Bounds.h"

#include "dicom/codecs/CodecError.h"

#include <algorithm>
#include <map>
#include <optional>

namespace cinedisc::dicom::codecs {
namespace {

using Bytes = std::span<const std::uint8_t>;

/// The second bytes of markers (ITU-T T.800 table A.2).
enum Marker : std::uint8_t { cod = 0x52, coc = 0x53, sot = 0x90, sod = 0x93, eoc = 0xD9 };

/// Markers that a decoder may meet in headers: with others it goes on searching in its own way, and what
/// it finds is not foreseen here.
bool isOfHeaders(std::uint8_t code) {
    return (code >= 0x50 && code <= 0x65) || (code >= 0x74 && code <= 0x79);
}

/// Walks over the headers of a code stream, the main one and those of the tile parts.
class HeaderWalk {
  public:
    HeaderWalk(Bytes stream, const Jpeg2000Grid& grid) : stream_(stream), grid_(grid) {
        main_.components.resize(grid.components.size());
    }

    std::optional<DecodeError> run() {
        constexpr std::size_t startMarker = 2;
        position_ = startMarker;
        if (auto error = readHeader(main_, sot)) return error;
        while (has(12) && stream_[position_] == 0xFF && stream_[position_ + 1] == sot)
            if (auto error = readTilePart()) return error;
        return std::nullopt;
    }

    const Jpeg2000TileCoding& coding(std::uint64_t tile) const {
        const auto found = special_.find(tile);
        return found == special_.end() ? main_ : found->second;
    }

  private:
    bool has(std::size_t count) const { return stream_.size() - position_ >= count; }
    std::size_t number(std::size_t at) const {
        return static_cast<std::size_t>(stream_[at] << 8 | stream_[at + 1]);
    }

    /// Reads marker segments up to the marker that ends the header, which stays.
    std::optional<DecodeError> readHeader(Jpeg2000TileCoding& coding, Marker end) {
        while (has(4)) {
            const std::uint8_t code = stream_[position_ + 1];
            if (stream_[position_] != 0xFF) return broken("no JPEG 2000 marker where one must be");
            if (code == end) return std::nullopt;
            if (!isOfHeaders(code)) return unsupported("an extension of JPEG 2000");
            const std::size_t length = number(position_ + 2);
            if (length < 2 || !has(2 + length)) break;
            const Bytes payload = stream_.subspan(position_ + 4, length - 2);
            const bool good = code == cod   ? coding.readForAll(payload)
                              : code == coc ? coding.readForOne(payload)
                                            : true;
            if (!good) return broken("impossible JPEG 2000 coding parameters");
            position_ += 2 + length;
        }
        return end == sod && has(2) && stream_[position_ + 1] == sod ? std::nullopt : std::optional(cutOff());
    }

    std::optional<DecodeError> readTilePart() {
        constexpr std::size_t header = 12;
        const std::size_t start = position_, tile = number(start + 4);
        const std::size_t length = number(start + 6) << 16 | number(start + 8);
        position_ += header;
        const auto known = special_.find(tile);
        Jpeg2000TileCoding coding = known == special_.end() ? main_ : known->second;
        const std::size_t before = position_;
        if (auto error = readHeader(coding, sod)) return error;
        if (position_ > before && tile < grid_.tiles()) special_[tile] = std::move(coding);
        const std::size_t end = length == 0 ? stream_.size() : std::min(stream_.size(), start + length);
        if (end < position_ + 2) return broken("a JPEG 2000 tile part is too short");
        position_ = end;
        return std::nullopt;
    }

    Bytes stream_;
    const Jpeg2000Grid& grid_;
    std::size_t position_ = 0;
    Jpeg2000TileCoding main_;
    std::map<std::uint64_t, Jpeg2000TileCoding> special_;
};

}  // namespace

Result<std::uint64_t> jpeg2000Overhead(Bytes stream, const Jpeg2000Grid& grid) {
    constexpr std::uint64_t smallestTilePart = 14, usualBlock = 256;
    // What OpenJPEG takes for each, measured.
    constexpr std::uint64_t tileBytes = 9216, componentBytes = 1280, precinctBytes = 256, blockBytes = 320,
                            filledBlockBytes = 512;
    const std::uint64_t tiles = grid.tiles(), length = stream.size();
    if (tiles > length / smallestTilePart) return broken("more JPEG 2000 tiles than the data can hold");

    HeaderWalk headers(stream, grid);
    if (const auto error = headers.run()) return *error;
    const std::uint64_t samples = (grid.right - grid.left) * (grid.bottom - grid.top) *
                                  static_cast<std::uint64_t>(grid.components.size());
    Jpeg2000Parts all;
    std::uint64_t largestTile = 0;
    for (std::uint64_t tile = 0; tile < tiles; ++tile) {
        const Jpeg2000Parts parts = partsOfTile(grid, tile, headers.coding(tile));
        all.packets += parts.packets;
        all.codeBlocks += parts.codeBlocks;
        // Every packet has a header of a byte or more.
        if (all.packets > length) return broken("more JPEG 2000 packets than the data can hold");
        if (all.codeBlocks > samples / usualBlock + length)
            return broken("more JPEG 2000 code blocks than the data can hold");
        largestTile = std::max(largestTile, parts.precincts * precinctBytes + parts.codeBlocks * blockBytes +
                                                std::min(parts.codeBlocks, length) * filledBlockBytes +
                                                2 * parts.packets);
    }
    return tiles * (tileBytes + componentBytes * grid.components.size()) + largestTile;
}

}  // namespace cinedisc::dicom::codecs
