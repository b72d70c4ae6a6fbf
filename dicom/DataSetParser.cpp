#include "dicom/DataSetParser.h"

#include "dicom/Faults.h"
#include "dicom/Tags.h"
#include "dicom/ValueRepresentation.h"

#include <algorithm>

namespace cinedisc::dicom {

namespace {

constexpr int deepestNesting = 64;
constexpr std::uint64_t mostElements = 500'000;
constexpr std::uint64_t mostBytesHeld = 64ull << 20;

/// Values up to this size are held; larger ones are left in the file. Tables that the first frame needs are
/// held whatever their legal size, so that nobody has to read backwards for them.
std::uint64_t holdLimit(Tag tag) {
    constexpr std::uint64_t usual = 64 << 10, table = 256 << 10, offsetTable = 16 << 20;
    if (tag.group == tags::ExtendedOffsetTable.group) return offsetTable;
    const bool isPalette =
        tag >= tags::RedPaletteData && tag <= tags::forColour(tags::SegmentedRedPaletteData, 2);
    return tag == tags::LUTData || isPalette || tags::isOverlayGroup(tag.group) ? table : usual;
}

bool isDelimiter(Tag tag) { return tag == tags::ItemDelimitation || tag == tags::SequenceDelimitation; }

}  // namespace

std::optional<ElementHeader> DataSetParser::peekHeader(const Level& level) {
    const std::uint64_t room = level.end - std::min(buffer_.position(), level.end);
    const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(ElementHeader::mostBytes, room));
    return readElementHeader(buffer_.peek(most), level.encoding, room);
}

DataSetParser::End DataSetParser::broken(DecodeError::Kind kind, Tag tag) {
    error_ = DecodeError{kind, DecodeError::Reason::Header, {}, tag, buffer_.position()};
    return End::Broken;
}

DataSetParser::End DataSetParser::brokenOff(Tag tag) {
    if (buffer_.hasFailed()) {
        error_ = faults::cannotRead(tag, buffer_.size());
        return End::Broken;
    }
    return broken(DecodeError::Kind::CutOff, tag);
}

void DataSetParser::parseFileMeta(DataSet& into) {
    const Level level{explicitLittle, buffer_.size(), false, 0};
    for (;;) {
        const auto header = peekHeader(level);
        if (!header || header->tag.group != tags::TransferSyntaxUID.group) return;
        if (parseElement(into, *header, level) == End::Broken) return;
    }
}

std::optional<DecodeError> DataSetParser::parse(DataSet& into, Encoding encoding) {
    error_.reset();
    parseElements(into, Level{encoding, buffer_.size(), false, 0});
    return std::move(error_);
}

DataSetParser::End DataSetParser::parseElements(DataSet& into, const Level& level) {
    while (buffer_.position() < level.end) {
        const auto header = peekHeader(level);
        if (!header) {
            const auto rest = buffer_.peek(static_cast<std::size_t>(level.end - buffer_.position()));
            const bool isPadding =
                std::all_of(rest.begin(), rest.end(), [](std::byte b) { return b == std::byte{0}; });
            if (level.depth == 0 && (!isPadding || buffer_.hasFailed())) return brokenOff({});
            buffer_.advance(level.end - buffer_.position());
            return End::Reached;
        }
        if (header->tag.group == tags::Item.group) {
            if (level.depth > 0) return End::Reached;
            buffer_.advance(static_cast<std::uint64_t>(header->bytes));
            continue;
        }
        if (level.depth == 0 && header->tag.group > tags::Rows.group) tellFrameBytes(into);
        const bool isPadding = header->tag == Tag{} && header->length == 0;
        if (level.depth == 0 && (isPadding || takePixels(into, *header))) return End::Reached;
        if (parseElement(into, *header, level) == End::Broken) {
            if (!level.hasKnownEnd) return End::Broken;
            error_.reset();
            buffer_.advance(level.end - std::min(buffer_.position(), level.end));
        }
    }
    return End::Reached;
}

DataSetParser::End DataSetParser::parseElement(DataSet& into, const ElementHeader& header,
                                               const Level& level) {
    if (++elementCount_ > mostElements) return broken(DecodeError::Kind::TooLarge, header.tag);
    const bool isSequence = holdsItems(header, level);
    buffer_.advance(static_cast<std::uint64_t>(header.bytes));
    const std::uint64_t room = level.end - std::min(buffer_.position(), level.end);
    if (!header.isOpen() && header.length > room) return brokenOff(header.tag);

    into.elements.emplace_back();
    Element& element = into.elements.back();
    element.tag = header.tag;
    element.valueRepresentation = isSequence ? vr("SQ") : header.valueRepresentation;
    element.offset = buffer_.position();
    element.length = header.isOpen() ? 0 : header.length;
    const Level inner{header.encoding, header.isOpen() ? level.end : buffer_.position() + header.length,
                      !header.isOpen(), level.depth + 1};
    if (isSequence) {
        const End end = parseItems(element, inner);
        element.length = buffer_.position() - element.offset;
        return end;
    }
    if (header.isOpen()) {
        element.held = false;
        const End end = skipFragments(inner);
        element.length = buffer_.position() - element.offset;
        return end;
    }
    readValue(element, level.encoding);
    return End::Reached;
}

/// A sequence is known by its representation or, in encodings without one, by the item that it begins with.
bool DataSetParser::holdsItems(const ElementHeader& header, const Level& level) {
    const Vr stated = header.valueRepresentation;
    if (stated == vr("SQ")) return true;
    if (stated != vr("UN") && !(header.isOpen() && stated != vr("OB") && stated != vr("OW"))) return false;
    const auto most = static_cast<std::uint64_t>(header.bytes) + itemHeader;
    if (!header.isOpen() && header.length < itemHeader) return false;
    if (buffer_.position() + most > level.end) return false;
    const auto bytes = buffer_.peek(static_cast<std::size_t>(most));
    if (bytes.size() < most) return false;
    const auto first =
        readElementHeader(bytes.subspan(static_cast<std::size_t>(header.bytes)), header.encoding, itemHeader);
    if (!first) return false;
    if (header.isOpen()) return first->tag == tags::Item || first->tag == tags::SequenceDelimitation;
    return first->tag == tags::Item && (first->isOpen() || first->length <= header.length - itemHeader);
}

DataSetParser::End DataSetParser::parseItems(Element& sequence, const Level& level) {
    if (level.depth > deepestNesting) {
        if (!level.hasKnownEnd) return broken(DecodeError::Kind::Broken, sequence.tag);
        buffer_.advance(level.end - buffer_.position());
        return End::Reached;
    }
    while (buffer_.position() < level.end) {
        const auto header = peekHeader(level);
        if (!header || !(header->tag == tags::Item || isDelimiter(header->tag))) {
            if (level.hasKnownEnd) break;
            return broken(DecodeError::Kind::Broken, sequence.tag);
        }
        buffer_.advance(static_cast<std::uint64_t>(header->bytes));
        if (header->tag == tags::SequenceDelimitation && !level.hasKnownEnd) return End::Reached;
        if (isDelimiter(header->tag)) continue;
        if (++elementCount_ > mostElements) return broken(DecodeError::Kind::TooLarge, sequence.tag);
        sequence.items.emplace_back();
        if (parseItem(sequence.items.back(), header->length, level) == End::Broken) return End::Broken;
    }
    if (!level.hasKnownEnd) return brokenOff(sequence.tag);
    buffer_.advance(level.end - std::min(buffer_.position(), level.end));
    return End::Reached;
}

DataSetParser::End DataSetParser::parseItem(DataSet& into, std::uint32_t length, const Level& level) {
    const bool isOpen = length == ElementHeader::undefinedLength;
    if (isOpen) return parseElements(into, {level.encoding, level.end, false, level.depth});
    const std::uint64_t end = std::min(buffer_.position() + length, level.end);
    return parseElements(into, {level.encoding, end, true, level.depth});
}

DataSetParser::End DataSetParser::skipFragments(const Level& level) {
    while (const auto header = peekHeader({implicitLittle, level.end, false, level.depth})) {
        buffer_.advance(static_cast<std::uint64_t>(header->bytes));
        if (header->tag == tags::SequenceDelimitation) return End::Reached;
        if (header->tag != tags::Item || header->length > level.end - buffer_.position() ||
            ++elementCount_ > mostElements)
            break;
        buffer_.advance(header->length);
    }
    return broken(DecodeError::Kind::Broken, {});
}

void DataSetParser::readValue(Element& element, const Encoding& encoding) {
    const std::uint64_t length = element.length;
    if (length > holdLimit(element.tag) || bytesHeld_ + length > mostBytesHeld) {
        element.held = false;
        return buffer_.advance(length);
    }
    const auto bytes = buffer_.peek(static_cast<std::size_t>(length));
    element.value.assign(bytes.begin(), bytes.end());
    bytesHeld_ += length;
    buffer_.advance(length);
    const auto unit = static_cast<std::size_t>(unitSize(effectiveVr(element)));
    if (encoding.order == ByteOrder::Little || unit == 1) return;
    for (auto at = element.value.begin(); element.value.end() - at >= static_cast<std::ptrdiff_t>(unit);) {
        std::reverse(at, at + static_cast<std::ptrdiff_t>(unit));
        at += static_cast<std::ptrdiff_t>(unit);
    }
}

bool DataSetParser::takePixels(DataSet& into, const ElementHeader& header) {
    if (!tags::isPixelData(header.tag) || header.length == 0) return false;
    buffer_.advance(static_cast<std::uint64_t>(header.bytes));
    const std::uint64_t room = buffer_.remaining();
    pixels_ = PixelElement{header.tag, header.valueRepresentation, buffer_.position(),
                           header.isOpen() ? room : header.length, header.isOpen()};
    Element element;
    element.tag = header.tag;
    element.valueRepresentation = header.valueRepresentation;
    element.offset = pixels_->offset;
    element.length = pixels_->length;
    element.held = false;
    into.elements.push_back(std::move(element));
    return true;
}

void DataSetParser::tellFrameBytes(const DataSet& header) {
    if (frameBytesTold_) return;
    frameBytesTold_ = true;
    const auto number = [&header](Tag tag, std::int64_t otherwise, std::int64_t most) {
        return std::clamp<std::int64_t>(header.integer(tag).value_or(otherwise), 0, most);
    };
    const std::int64_t pixels = number(tags::Rows, 0, 0xFFFF) * number(tags::Columns, 0, 0xFFFF);
    const std::int64_t bits = number(tags::SamplesPerPixel, 1, 4) * number(tags::BitsAllocated, 8, 64);
    const std::int64_t frames = std::max<std::int64_t>(number(tags::NumberOfFrames, 1, 1 << 24), 1);
    // Compressed frames differ in size: half of the mean is on the safe side.
    const auto mean = static_cast<std::int64_t>(buffer_.remaining()) / frames;
    buffer_.expectFrameBytes(static_cast<std::uint64_t>(std::min(pixels * bits / 8, mean / 2)));
}

}  // namespace cinedisc::dicom
