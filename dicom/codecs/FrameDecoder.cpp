#include "dicom/codecs/FrameDecoder.h"

#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/CodedPicture.h"
#include "dicom/codecs/Jpeg2000Decoder.h"
#include "dicom/codecs/Jpeg2000Header.h"
#include "dicom/codecs/JpegBounds.h"
#include "dicom/codecs/JpegLsDecoder.h"
#include "dicom/codecs/JpegMarkers.h"
#include "dicom/codecs/LibraryDecoding.h"
#include "dicom/codecs/LosslessJpegDecoder.h"
#include "dicom/codecs/NativeDecoder.h"
#include "dicom/codecs/PixelCell.h"
#include "dicom/codecs/RleDecoder.h"

#include <new>
#include <optional>
#include <string>

namespace cinedisc::dicom {
namespace {

using namespace codecs;
using Bytes = std::span<const std::uint8_t>;

/// What keeps a JPEG stream from being decoded for this file.
std::optional<DecodeError> jpegError(const JpegHeader& header, const PixelFormat& format) {
    const bool rowsComeLater = header.rows == 0 && header.startOfFrame == marker::sof3;
    if (header.columns != format.columns || (header.rows != format.rows && !rowsComeLater))
        return broken("the picture has another size than its header says");
    if (header.componentCount != 1 && header.componentCount != 3)
        return unsupported("JPEG with " + std::to_string(header.componentCount) + " components");
    return std::nullopt;
}

Result<CodedPicture> byLibrary(Bytes bytes, const LibraryTask& task) {
    auto decoded = decodeByLibrary(bytes, task);
    if (!decoded) return decoded.error();
    return std::move(decoded.value().picture);
}

Result<CodedPicture> decodeJpeg(Bytes bytes, const PixelFormat& format) {
    const Result<JpegHeader> read = readJpegHeader(bytes);
    if (!read) return read.error();
    const JpegHeader& header = read.value();
    if (const auto error = jpegError(header, format)) return *error;
    if (header.startOfFrame == marker::sof55) return decodeJpegLs(bytes, header, format);
    if (header.startOfFrame == marker::sof3) return decodeLosslessJpeg(bytes, header, format);
    const bool isCosine = header.startOfFrame <= marker::sof2;
    if (isCosine && (header.precision == 8 || header.precision == 12)) {
        if (const auto error = jpegWorkError(bytes, header, format)) return *error;
        return byLibrary(bytes, {LibraryCodec::Jpeg, format});
    }
    return unsupported("JPEG process " + std::to_string(header.startOfFrame - marker::sof0) + ", " +
                       std::to_string(header.precision) + " bit");
}

std::string nameOf(Compression compression) {
    switch (compression) {
        case Compression::Jpeg:
            return "JPEG";
        case Compression::JpegLs:
            return "JPEG-LS";
        case Compression::Jpeg2000:
            return "JPEG 2000";
        default:
            return "compressed";
    }
}

/// The format whose values are the whole cells.
PixelFormat wholeCells(PixelFormat format) {
    format.bitsStored = format.bitsAllocated;
    format.highBit = format.bitsAllocated - 1;
    format.isSigned = false;
    format.mayBeLossy = false;
    return format;
}

/// What any decoder takes: the bytes, the cells, and those of colour once more as red, green and blue.
std::uint64_t leastBytesToDecode(std::size_t bytes, const PixelFormat& format) {
    const auto samples = static_cast<std::uint64_t>(format.rows) *
                         static_cast<std::uint64_t>(format.columns) *
                         static_cast<std::uint64_t>(format.samplesPerPixel);
    const int cellBits = format.sampleKind == SampleKind::Double ? 64 : pixelCell(format).allocated;
    return bytes + samples * static_cast<std::uint64_t>(cellBits / 8) * (format.samplesPerPixel == 3 ? 2 : 1);
}

bool holdsCells(const CodedPicture& picture, const PixelFormat& format) {
    return picture.exactness == Exactness::Same && picture.components == 1 &&
           picture.precision == format.bitsAllocated;
}

Result<Frame> decode(Bytes bytes, const PixelFormat& format, Compression compression, CellBits wanted) {
    if (isJpeg(bytes) || isJpeg2000(bytes)) {
        Result<CodedPicture> picture =
            isJpeg(bytes) ? decodeJpeg(bytes, format) : byLibrary(bytes, {LibraryCodec::Jpeg2000, format});
        if (!picture) return picture.error();
        if (wanted == CellBits::All && !holdsCells(picture.value(), format))
            return unsupported("no bits beside the values");
        return toFrame(std::move(picture.value()), format);
    }
    if (compression == Compression::Rle) return decodeRle(std::as_bytes(bytes), format);
    if (compression == Compression::Unsupported) return unsupported("its compression is not known");
    return broken("no " + nameOf(compression) + " data");
}

}  // namespace

Result<Frame> decodeFrame(std::span<const std::byte> bytes, const PixelFormat& format,
                          Compression compression, bool bigEndian, int firstBit, CellBits wanted) {
    try {
        if (const auto error = formatError(format)) return *error;
        const bool asCells = wanted == CellBits::All && format.sampleKind == SampleKind::Integer;
        const PixelFormat cells = asCells ? wholeCells(format) : format;
        if (bytes.empty()) return cutOff();
        if (leastBytesToDecode(bytes.size(), cells) > maximumDecodingBytes) return tooLarge();
        if (compression == Compression::None) return decodeNative(bytes, cells, bigEndian, firstBit);
        if (format.sampleKind != SampleKind::Integer) return unsupported("compressed floating point");
        return decode({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, cells, compression,
                      wanted);
    } catch (const std::bad_alloc&) {
        return tooLarge();
    } catch (const std::exception&) {
        return broken("they could not be decoded");
    }
}

bool isDecodedOnAllProcessors(const PixelFormat& format) { return isLargeJpeg2000(format); }

std::optional<CoarseFrame> decodeCoarseFrame(std::span<const std::byte> bytes, const PixelFormat& format,
                                             int leastSide) {
    try {
        const Bytes stream{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
        if (formatError(format) || format.sampleKind != SampleKind::Integer || !isJpeg2000(stream))
            return std::nullopt;
        auto coarse = decodeByLibrary(stream, {LibraryCodec::CoarseJpeg2000, format, leastSide});
        if (!coarse) return std::nullopt;
        const int halvings = coarse.value().halvings;
        auto frame = toFrame(std::move(coarse.value().picture), halved(format, halvings));
        if (!frame) return std::nullopt;
        return CoarseFrame{std::move(frame.value()), halvings};
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace cinedisc::dicom
