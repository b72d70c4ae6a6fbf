#include "dicom/OverlayReading.h"

#include "dicom/Bytes.h"
#include "dicom/Tags.h"

#include <algorithm>
#include <climits>

namespace cinedisc::dicom {

namespace {

constexpr int largestSide = 65535;
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
    return bit >= 0 && bit < std::min(format.bitsAllocated, 16) && !isUsed;
}

bool readOverlay(const DataSet& header, const PixelFormat& format, int group, Overlay& overlay) {
    const auto number = [&header, group](std::uint16_t element) {
        return header.integer(inGroup(group, element));
    };
    overlay.group = group;
    overlay.rows = bounded(number(0x0010), 0, largestSide, 0);
    overlay.columns = bounded(number(0x0011), 0, largestSide, 0);
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

std::vector<std::uint8_t> readOverlayFrame(const ByteSource& body, const DataSet& header,
                                           const Overlay& overlay, int overlayFrame) {
    const Element* data = header.find(inGroup(overlay.group, 0x3000));
    const std::uint64_t pixels = planePixels(overlay);
    const std::uint64_t firstBit = pixels * static_cast<std::uint64_t>(overlayFrame);
    if (!data || (firstBit + pixels + 7) / 8 > data->length) return {};
    std::vector<std::byte> bytes(static_cast<std::size_t>((firstBit % 8 + pixels + 7) / 8));
    if (body.readAt(data->offset + firstBit / 8, bytes) < bytes.size()) return {};
    return unpack(bytes, firstBit % 8, pixels);
}

std::vector<std::uint8_t> embeddedBits(std::span<const std::byte> nativeFrame, const PixelFormat& format,
                                       const Overlay& overlay, bool bigEndian) {
    const auto cellBytes = static_cast<std::size_t>(format.bitsAllocated / 8);
    const bool hasCells = format.bitsAllocated % 8 == 0 && format.samplesPerPixel == 1 && cellBytes <= 4;
    if (!hasCells) return {};
    const auto order = bigEndian ? ByteOrder::Big : ByteOrder::Little;
    std::vector<std::uint8_t> bits(static_cast<std::size_t>(planePixels(overlay)));
    const int rows = std::min(overlay.rows, format.rows), columns = std::min(overlay.columns, format.columns);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const auto cell = static_cast<std::size_t>(row) * static_cast<std::size_t>(format.columns) +
                              static_cast<std::size_t>(column);
            if ((cell + 1) * cellBytes > nativeFrame.size()) return {};
            const auto value = loadNumber(&nativeFrame[cell * cellBytes], static_cast<int>(cellBytes), order);
            bits[static_cast<std::size_t>(row) * static_cast<std::size_t>(overlay.columns) +
                 static_cast<std::size_t>(column)] = value >> overlay.embeddedBit & 1;
        }
    }
    return bits;
}

}  // namespace cinedisc::dicom
