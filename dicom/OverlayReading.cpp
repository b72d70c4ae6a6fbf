#include "dicom/OverlayReading.h"

#include "dicom/Tags.h"

#include <algorithm>
#include <climits>
#include <span>
#include <type_traits>
#include <utility>
#include <variant>

namespace cinedisc::dicom {

namespace {

constexpr int largestPlaneSide = 65535;
constexpr std::uint64_t mostPlanePixels = 64ull << 20;

constexpr Tag inGroup(int group, std::uint16_t element) {
    return {static_cast<std::uint16_t>(group), element};
}

int bounded(std::optional<std::int64_t> value, int lowest, int highest, int otherwise) {
    return value ? static_cast<int>(std::clamp<std::int64_t>(*value, lowest, highest)) : otherwise;
}

std::uint64_t planePixels(const Overlay& overlay) {
    return static_cast<std::uint64_t>(overlay.rows) * static_cast<std::uint64_t>(overlay.columns);
}

std::vector<std::uint8_t> unpack(std::span<const std::byte> bytes, std::uint64_t firstBit,
                                 std::uint64_t count) {
    std::vector<std::uint8_t> bits(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < bits.size(); ++i) {
        const std::uint64_t bit = firstBit + i;
        bits[i] = std::to_integer<std::uint8_t>(bytes[static_cast<std::size_t>(bit / 8)] >> (bit % 8)) & 1;
    }
    return bits;
}

bool isUnusedBit(std::int64_t bit, const PixelFormat& format) {
    const bool isUsed = bit <= format.highBit && bit > format.highBit - format.bitsStored;
    return bit >= 0 && bit < std::min(format.bitsAllocated, 16) && !isUsed && format.samplesPerPixel == 1 &&
           format.sampleKind == SampleKind::Integer;
}

bool readOverlay(const DataSet& header, const PixelFormat& format, int group, Overlay& overlay) {
    const auto number = [&header, group](std::uint16_t element) {
        return header.integer(inGroup(group, element));
    };
    overlay.group = group;
    overlay.rows = bounded(number(0x0010), 0, largestPlaneSide, 0);
    overlay.columns = bounded(number(0x0011), 0, largestPlaneSide, 0);
    const std::uint64_t pixels = planePixels(overlay);
    if (pixels == 0 || pixels > mostPlanePixels) return false;
    const auto origin = header.integers(inGroup(group, 0x0050));
    if (origin.size() >= 2) {
        overlay.originRow = bounded(origin[0], SHRT_MIN, SHRT_MAX, 1);
        overlay.originColumn = bounded(origin[1], SHRT_MIN, SHRT_MAX, 1);
    }
    const auto frames = number(0x0015);
    overlay.multiFrame = frames.has_value();
    overlay.frames = bounded(frames, 1, INT_MAX, 1);
    overlay.firstImageFrame = bounded(number(0x0051), 1, INT_MAX, 1);
    overlay.label = header.string(inGroup(group, 0x1500));

    const Element* data = header.find(inGroup(group, 0x3000));
    if (!data || data->length == 0) {
        const auto position = number(0x0102);
        if (!position || !isUnusedBit(*position, format)) return false;
        overlay.embeddedBit = static_cast<int>(*position);
        return true;
    }
    const std::uint64_t framesThere = data->length * 8 / pixels;
    overlay.frames =
        static_cast<int>(std::min<std::uint64_t>(static_cast<std::uint64_t>(overlay.frames), framesThere));
    if (overlay.frames == 0) return false;
    if (data->held)
        overlay.bits = unpack(data->value, 0, pixels * static_cast<std::uint64_t>(overlay.frames));
    return true;
}

}  // namespace

std::vector<Overlay> readOverlays(const DataSet& header, const PixelFormat& format) {
    std::vector<Overlay> overlays;
    for (int group = 0x6000; tags::isOverlayGroup(group); group += 2) {
        Overlay overlay;
        if (readOverlay(header, format, group, overlay)) overlays.push_back(std::move(overlay));
    }
    return overlays;
}

int overlayFrameFor(const Overlay& overlay, int imageFrame) {
    if (imageFrame < 0) return -1;
    if (overlay.embeddedBit >= 0) return imageFrame;
    if (!overlay.multiFrame) return 0;
    const std::int64_t index = std::int64_t{imageFrame} + 1 - overlay.firstImageFrame;
    return index >= 0 && index < overlay.frames ? static_cast<int>(index) : -1;
}

std::vector<std::uint8_t> readOverlayFrame(const ByteSource& body, const DataSet& header, ByteOrder order,
                                           const Overlay& overlay, int overlayFrame) {
    const Element* data = header.find(inGroup(overlay.group, 0x3000));
    const std::uint64_t pixels = planePixels(overlay);
    const std::uint64_t bit = pixels * static_cast<std::uint64_t>(overlayFrame);
    if (!data || (bit + pixels + 7) / 8 > data->length) return {};
    // Whole words: those of big endian files have their bytes the other way round.
    const std::uint64_t from = bit / 16 * 2, firstBit = bit % 16;
    std::vector<std::byte> bytes(static_cast<std::size_t>(
        std::min((firstBit + pixels + 15) / 16 * 2, data->length - std::min(from, data->length))));
    if (body.readAt(data->offset + from, bytes) < bytes.size()) return {};
    if (order == ByteOrder::Big && data->valueRepresentation != vr("OB"))
        for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) std::swap(bytes[at], bytes[at + 1]);
    return unpack(bytes, firstBit, pixels);
}

std::vector<std::uint8_t> embeddedBits(const Frame& cells, const Overlay& overlay) {
    const auto bitsOf = [&](const auto& samples) {
        std::vector<std::uint8_t> bits(static_cast<std::size_t>(planePixels(overlay)));
        const auto rows = static_cast<std::size_t>(std::min(overlay.rows, cells.rows));
        const auto columns = static_cast<std::size_t>(std::min(overlay.columns, cells.columns));
        for (std::size_t row = 0; row < rows; ++row) {
            const auto* from = &samples[row * static_cast<std::size_t>(cells.columns)];
            std::uint8_t* to = &bits[row * static_cast<std::size_t>(overlay.columns)];
            for (std::size_t column = 0; column < columns; ++column)
                to[column] = static_cast<std::uint8_t>(from[column] >> overlay.embeddedBit & 1);
        }
        return bits;
    };
    return std::visit(
        [&](const auto& samples) -> std::vector<std::uint8_t> {
            using Sample = typename std::decay_t<decltype(samples)>::value_type;
            if constexpr (std::is_unsigned_v<Sample>) return bitsOf(samples);
            return {};
        },
        cells.samples);
}

}  // namespace cinedisc::dicom
