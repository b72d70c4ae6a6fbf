#include "dicom/codecs/PixelCell.h"

#include "dicom/codecs/CodecError.h"

namespace cinedisc::dicom::codecs {

PixelCell pixelCell(const PixelFormat& format) {
    PixelCell cell;
    cell.allocated = format.bitsAllocated <= 8 ? 8 : format.bitsAllocated <= 16 ? 16 : 32;
    cell.stored = format.bitsStored;
    if (cell.stored < 1 || cell.stored > cell.allocated) cell.stored = cell.allocated;
    cell.shift = format.highBit + 1 - cell.stored;
    if (cell.shift < 0 || cell.shift + cell.stored > cell.allocated) cell.shift = 0;
    return cell;
}

std::optional<DecodeError> formatError(const PixelFormat& format) {
    if (format.rows < 1 || format.columns < 1 || format.rows > 65535 || format.columns > 65535)
        return broken("the header gives no usable number of rows and columns");
    if (format.samplesPerPixel != 1 && format.samplesPerPixel != 3)
        return unsupported(std::to_string(format.samplesPerPixel) + " samples a pixel");
    const bool isInteger = format.sampleKind == SampleKind::Integer;
    if (isInteger && (format.bitsAllocated < 1 || format.bitsAllocated > 32))
        return unsupported(std::to_string(format.bitsAllocated) + " bits allocated");
    if (!isInteger && format.samplesPerPixel != 1) return unsupported("colour in floating point");

    const std::uint64_t samples = static_cast<std::uint64_t>(format.rows) *
                                  static_cast<std::uint64_t>(format.columns) *
                                  static_cast<std::uint64_t>(format.samplesPerPixel);
    const std::uint64_t sampleBytes = format.sampleKind == SampleKind::Double ? 8
                                      : format.sampleKind == SampleKind::Float
                                          ? 4
                                          : pixelCell(format).allocated / 8;
    if (samples * sampleBytes > maximumFrameBytes) return tooLarge();
    return std::nullopt;
}

}  // namespace cinedisc::dicom::codecs
