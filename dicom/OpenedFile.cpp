#include "dicom/OpenedFile.h"

#include "dicom/CellUnpacking.h"
#include "dicom/CharacterSet.h"
#include "dicom/CodeStream.h"
#include "dicom/DataSetParser.h"
#include "dicom/ElementText.h"
#include "dicom/Faults.h"
#include "dicom/GreyRules.h"
#include "dicom/Inflating.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/OverlayReading.h"
#include "dicom/PaletteReading.h"
#include "dicom/PixelAspectRule.h"
#include "dicom/PixelDescription.h"
#include "dicom/ShutterReading.h"
#include "dicom/Tags.h"

namespace cinedisc::dicom {

std::optional<DecodeError> OpenedFile::missing(int frame) const {
    DecodeError error;
    if (picture_.error)
        error = *picture_.error;
    else if (frame >= picture_.frameCount && frame < picture_.announcedFrameCount)
        error = faults::cutOff(picture_.frameCount, picture_.announcedFrameCount);
    else if (frame < 0 || frame >= picture_.frameCount)
        error = DecodeError{DecodeError::Kind::Broken, DecodeError::Reason::NoSuchFrame};
    else
        return std::nullopt;
    error.frame = frame;
    return error;
}

Result<FrameBytes> OpenedFile::readFrame(int frame) const {
    if (auto error = missing(frame)) return std::move(*error);
    auto bytes = picture_.frames->read(frame);
    if (bytes) return bytes;
    DecodeError error = bytes.error();
    error.frame = frame;
    return error;
}

Result<Frame> OpenedFile::decodeRead(int frame, const FrameBytes& bytes) const {
    auto decoded = decodeBytes(bytes, CellBits::OfValues);
    if (decoded) return decoded;
    DecodeError error = decoded.error();
    error.frame = frame;
    return error;
}

bool OpenedFile::decodesOnAllProcessors() const {
    return isSlowToDecode() && isDecodedOnAllProcessors(picture_.format);
}

std::optional<CoarseFrame> OpenedFile::decodeCoarse(int, const FrameBytes& bytes, int leastSide) const {
    // As measured, JPEG 2000 takes about 5 ns for a sample and 110 ns for a byte of its code stream.
    constexpr std::uint64_t nanosecondsASample = 5, nanosecondsAByte = 110, worthWaiting = 30'000'000;
    const auto samples = static_cast<std::uint64_t>(picture_.format.rows) *
                         static_cast<std::uint64_t>(picture_.format.columns) *
                         static_cast<std::uint64_t>(picture_.format.samplesPerPixel);
    if (makesDecodersEnd() || picture_.hasDeflatedFrames || compressionOf(bytes) != Compression::Jpeg2000 ||
        samples * nanosecondsASample + bytes.length * nanosecondsAByte < worthWaiting)
        return std::nullopt;
    return decodeCoarseFrame(bytes.bytes(), picture_.format, leastSide);
}

/// A frame that cannot be inflated is left as it is, for the decoder to find too short.
FrameBytes OpenedFile::inflated(const FrameBytes& bytes) const {
    const auto stream = bytes.bytes();
    const MemoryByteSource deflated({stream.begin(), stream.end()});
    auto whole = inflateFrom(deflated, 0, nativeFrameBits(picture_.format) / 8 + 1);
    if (!whole) return bytes;
    FrameBytes frame;
    frame.storage = std::move(whole.value());
    frame.length = frame.storage.size();
    return frame;
}

Compression OpenedFile::compressionOf(const FrameBytes& bytes) const {
    const bool saysUncompressed = picture_.compression == Compression::None && header_.syntax &&
                                  header_.syntax->pixels != TransferSyntax::Pixels::Native;
    const bool mayBeNative = saysUncompressed && bytes.length * 8 >= nativeFrameBits(picture_.format);
    if (!picture_.isEncapsulated || mayBeNative) return picture_.compression;
    return sniffCompression(bytes.bytes()).value_or(picture_.compression);
}

/// A file is not to have one process started after the other, or to keep the processor busy for long.
bool OpenedFile::makesDecodersEnd() const { return lostDecoders_ >= 5; }

Result<Frame> OpenedFile::decodeBytes(const FrameBytes& bytes, CellBits wanted) const {
    if (makesDecodersEnd()) return DecodeError{DecodeError::Kind::Broken, DecodeError::Reason::Decoder};
    auto decoded = decodeUndeflated(bytes, wanted);
    if (!decoded && decoded.error().reason == DecodeError::Reason::Decoder) ++lostDecoders_;
    return decoded;
}

Result<Frame> OpenedFile::decodeUndeflated(const FrameBytes& bytes, CellBits wanted) const {
    return picture_.hasDeflatedFrames ? decodeInflated(inflated(bytes), wanted)
                                      : decodeInflated(bytes, wanted);
}

Result<Frame> OpenedFile::decodeInflated(const FrameBytes& bytes, CellBits wanted) const {
    const Compression compression = compressionOf(bytes);
    if (compression != Compression::None)
        return decodeFrame(bytes.bytes(), picture_.format, compression, false, 0, wanted);
    if (hasPackedCells(picture_.format)) {
        const auto spread = spreadCells(bytes.bytes(), bytes.firstBit, picture_.format);
        return decodeFrame(spread, spreadFormat(picture_.format), Compression::None, false, 0, wanted);
    }
    const bool bigEndian = !picture_.isEncapsulated && header_.hasBigEndianPixels();
    return decodeFrame(bytes.bytes(), picture_.format, Compression::None, bigEndian, bytes.firstBit, wanted);
}

GreyTransform OpenedFile::greyTransform(int frame) const {
    return readGreyTransform(header_.elements, picture_.format, frame);
}

bool OpenedFile::hasGreyRulesByFrame() const {
    std::call_once(greyOnce_, [this] { hasGreyRulesByFrame_ = readsGreyRulesByFrame(header_.elements); });
    return hasGreyRulesByFrame_;
}

const std::optional<Palette>& OpenedFile::palette() const {
    std::call_once(paletteOnce_, [this] { palette_ = readPalette(header_.elements, picture_.format); });
    return palette_;
}

Shutter OpenedFile::shutter(int frame) const { return readShutter(header_.elements, frame); }
bool OpenedFile::hasShuttersByFrame() const { return readsShuttersByFrame(header_.elements); }

const std::vector<Overlay>& OpenedFile::overlays() const {
    std::call_once(overlaysOnce_, [this] { overlays_ = readOverlays(header_.elements, picture_.format); });
    return overlays_;
}

std::vector<std::uint8_t> OpenedFile::overlayBitsIn(const FrameBytes& bytes, const Overlay& overlay,
                                                    int frame) const {
    if (overlay.embeddedBit < 0) return overlayBits(overlay, frame);
    const auto cells = decodeBytes(bytes, CellBits::All);
    return cells ? embeddedBits(cells.value(), overlay) : std::vector<std::uint8_t>();
}

std::vector<std::uint8_t> OpenedFile::overlayBits(const Overlay& overlay, int frame) const {
    const int own = overlayFrameFor(overlay, frame);
    if (own < 0) return {};
    if (overlay.embeddedBit >= 0) {
        const auto bytes = readFrame(frame);
        return bytes ? overlayBitsIn(bytes.value(), overlay, frame) : std::vector<std::uint8_t>();
    }
    if (overlay.bits.empty())
        return readOverlayFrame(*header_.body, header_.elements, header_.encoding.order, overlay, own);
    const std::size_t pixels =
        static_cast<std::size_t>(overlay.rows) * static_cast<std::size_t>(overlay.columns);
    const auto from = pixels * static_cast<std::size_t>(own);
    if (from + pixels > overlay.bits.size()) return {};
    const auto begin = overlay.bits.begin() + static_cast<std::ptrdiff_t>(from);
    return {begin, begin + static_cast<std::ptrdiff_t>(pixels)};
}

PixelAspect OpenedFile::pixelAspect() const { return readPixelAspect(header_.elements, picture_.format); }

std::string OpenedFile::text(Tag tag) const {
    const Element* element = header_.elements.find(tag);
    if (!element) return {};
    return elementText(*element, CharacterSet(header_.elements.strings(tags::SpecificCharacterSet)));
}

DataSet OpenedFile::elementsBehindPixels() const {
    DataSet elements;
    if (!header_.pixels || header_.pixels->isOpen) return elements;
    ForwardBuffer buffer(*header_.body);
    buffer.advance(header_.pixels->offset);
    buffer.advance(header_.pixels->length);
    // What is wrong behind the pixels harms nothing.
    (void)DataSetParser(buffer).parse(elements, header_.encoding);
    return elements;
}

}  // namespace cinedisc::dicom
