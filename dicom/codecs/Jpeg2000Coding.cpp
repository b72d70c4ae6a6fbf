#include "dicom/codecs/Jpeg2000Coding.h"

#include <algorithm>

namespace cinedisc::dicom::codecs {
namespace {

constexpr std::uint8_t largestPrecincts = 0xFF;

std::uint64_t dividedUp(std::uint64_t value, std::uint64_t by) { return (value + by - 1) / by; }

std::uint64_t halvedUp(std::uint64_t value, int times) {
    return (value + (std::uint64_t{1} << times) - 1) >> times;
}

/// A stretch of coordinates; two of them make a rectangle.
struct Stretch {
    std::uint64_t from = 0, to = 0;

    bool empty() const { return to <= from; }
    /// Cells of a grid that starts at 0 which it touches.
    std::uint64_t cells(int cellBits) const {
        return empty() ? 0 : halvedUp(to, cellBits) - (from >> cellBits);
    }
    /// In the subband that `levels` decompositions give; `high` for the one of high frequencies
    /// (ITU-T T.800 equation B-15).
    Stretch inSubband(int levels, bool high) const {
        const std::uint64_t offset = high ? std::uint64_t{1} << (levels - 1) : 0;
        const auto moved = [&](std::uint64_t v) { return halvedUp(v - std::min(v, offset), levels); };
        return {moved(from), moved(to)};
    }
};

bool readCoding(std::span<const std::uint8_t> payload, bool hasPrecincts, Jpeg2000Coding& coding) {
    constexpr std::size_t fixedPart = 5;
    if (payload.size() < fixedPart) return false;
    coding.levels = payload[0];
    coding.blockWidthBits = payload[1] + 2;
    coding.blockHeightBits = payload[2] + 2;
    if (coding.levels > 32 || coding.blockWidthBits > 10 || coding.blockHeightBits > 10) return false;
    coding.precincts.fill(largestPrecincts);
    if (!hasPrecincts) return true;
    const auto resolutions = static_cast<std::size_t>(coding.levels) + 1;
    if (payload.size() < fixedPart + resolutions) return false;
    std::copy_n(payload.begin() + fixedPart, resolutions, coding.precincts.begin());
    // Above the lowest resolution a precinct is divided among subbands of half its size.
    return std::all_of(coding.precincts.begin() + 1, coding.precincts.end(),
                       [](std::uint8_t sides) { return (sides & 15) > 0 && sides >> 4 > 0; });
}

Jpeg2000Parts partsOfComponent(Stretch across, Stretch down, const Jpeg2000Coding& coding, int layers) {
    Jpeg2000Parts parts;
    for (int resolution = 0; resolution <= coding.levels; ++resolution) {
        const bool lowest = resolution == 0;
        const int missing = coding.levels - resolution;
        const std::uint8_t sides = coding.precincts[static_cast<std::size_t>(resolution)];
        const std::uint64_t precincts = across.inSubband(missing, false).cells(sides & 15) *
                                        down.inSubband(missing, false).cells(sides >> 4);
        parts.packets += precincts * static_cast<std::uint64_t>(layers);
        parts.precincts += precincts * (lowest ? 1 : 3);
        const int width = std::min(coding.blockWidthBits, (sides & 15) - (lowest ? 0 : 1)),
                  height = std::min(coding.blockHeightBits, (sides >> 4) - (lowest ? 0 : 1));
        const int levels = lowest ? missing : missing + 1;
        const auto blocks = [&](bool highAcross, bool highDown) {
            return across.inSubband(levels, highAcross).cells(width) *
                   down.inSubband(levels, highDown).cells(height);
        };
        parts.codeBlocks +=
            lowest ? blocks(false, false) : blocks(true, false) + blocks(false, true) + blocks(true, true);
    }
    return parts;
}

}  // namespace

std::uint64_t Jpeg2000Grid::tilesAcross() const { return dividedUp(right - tileLeft, tileWidth); }

std::uint64_t Jpeg2000Grid::tiles() const { return tilesAcross() * dividedUp(bottom - tileTop, tileHeight); }

bool Jpeg2000TileCoding::readForAll(std::span<const std::uint8_t> payload) {
    constexpr std::size_t common = 5;
    Jpeg2000Coding coding;
    if (payload.size() < common || !readCoding(payload.subspan(common), payload[0] & 1, coding)) return false;
    layers = payload[2] << 8 | payload[3];
    std::fill(components.begin(), components.end(), coding);
    return true;
}

bool Jpeg2000TileCoding::readForOne(std::span<const std::uint8_t> payload) {
    constexpr std::size_t common = 2;
    return payload.size() >= common && payload[0] < components.size() &&
           readCoding(payload.subspan(common), payload[1] & 1, components[payload[0]]);
}

Jpeg2000Parts partsOfTile(const Jpeg2000Grid& grid, std::uint64_t tile, const Jpeg2000TileCoding& coding) {
    const std::uint64_t column = tile % grid.tilesAcross(), row = tile / grid.tilesAcross();
    const auto stretch = [](std::uint64_t origin, std::uint64_t index, std::uint64_t size, std::uint64_t low,
                            std::uint64_t high, std::uint64_t step) {
        return Stretch{dividedUp(std::max(origin + index * size, low), step),
                       dividedUp(std::min(origin + (index + 1) * size, high), step)};
    };
    Jpeg2000Parts parts;
    for (std::size_t i = 0; i < grid.components.size(); ++i) {
        const auto& steps = grid.components[i];
        const Jpeg2000Parts more =
            partsOfComponent(stretch(grid.tileLeft, column, grid.tileWidth, grid.left, grid.right, steps.x),
                             stretch(grid.tileTop, row, grid.tileHeight, grid.top, grid.bottom, steps.y),
                             coding.components[i], coding.layers);
        parts.packets += more.packets;
        parts.precincts += more.precincts;
        parts.codeBlocks += more.codeBlocks;
    }
    return parts;
}

}  // namespace cinedisc::dicom::codecs
