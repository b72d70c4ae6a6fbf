#include "discmaker/encoding/DicomWriter.h"

#include "discmaker/encoding/UidFactory.h"

#include <array>
#include <charconv>
#include <ostream>

namespace cinedisc::discmaker {

namespace {

using dicom::Tag;
using dicom::Vr;
using dicom::vr;

template <typename Number>
void appendNumber(std::string& bytes, Number value) {
    for (unsigned bits = 0; bits < sizeof(Number) * 8; bits += 8)
        bytes += static_cast<char>(value >> bits & 0xFF);
}

void appendTag(std::string& bytes, Tag tag) {
    appendNumber(bytes, tag.group);
    appendNumber(bytes, tag.element);
}

/// Value representations whose length field has 32 bits (PS3.5 table 7.1-1), of those written here.
bool hasLongLength(Vr representation) { return representation == vr("OB") || representation == vr("OW"); }

std::string elementHead(Tag tag, Vr representation, std::uint32_t length) {
    std::string head;
    appendTag(head, tag);
    head += static_cast<char>(representation >> 8);
    head += static_cast<char>(representation & 0xFF);
    if (hasLongLength(representation)) {
        appendNumber(head, std::uint16_t{0});
        appendNumber(head, length);
    } else {
        appendNumber(head, static_cast<std::uint16_t>(length));
    }
    return head;
}

void pad(std::string& bytes, Vr representation) {
    if (bytes.size() % 2 != 0) bytes += representation == vr("UI") || representation == vr("OB") ? '\0' : ' ';
}

constexpr Tag item{0xFFFE, 0xE000};
constexpr Tag sequenceEnd{0xFFFE, 0xE0DD};

std::string itemHead(Tag tag, std::size_t length) {
    std::string head;
    appendTag(head, tag);
    appendNumber(head, static_cast<std::uint32_t>(length));
    return head;
}

}  // namespace

void DicomWriter::putText(Attribute attribute, std::string_view text) {
    std::string bytes(text);
    pad(bytes, attribute.vr);
    elements_[attribute.tag] = {attribute.vr, std::move(bytes)};
}

void DicomWriter::putNumbers(Attribute attribute, std::initializer_list<double> values) {
    std::string text;
    for (double value : values) {
        std::array<char, 32> digits;
        const auto end =
            std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::general, 9);
        if (!text.empty()) text += '\\';
        text.append(digits.data(), end.ptr);
    }
    putText(attribute, text);
}

void DicomWriter::putShort(Attribute attribute, std::uint16_t value) {
    std::string bytes;
    appendNumber(bytes, value);
    elements_[attribute.tag] = {attribute.vr, std::move(bytes)};
}

void DicomWriter::putPointer(Attribute attribute, Attribute target) {
    std::string bytes;
    appendTag(bytes, target.tag);
    elements_[attribute.tag] = {attribute.vr, std::move(bytes)};
}

std::string DicomWriter::text(Attribute attribute) const {
    const auto found = elements_.find(attribute.tag);
    return found == elements_.end() ? std::string() : found->second.bytes;
}

DicomWriter::Elements DicomWriter::metaInformation() const {
    using namespace std::string_literals;
    Elements meta;
    const auto put = [&meta](std::uint16_t element, Vr representation, std::string bytes) {
        pad(bytes, representation);
        meta[{0x0002, element}] = {representation, std::move(bytes)};
    };
    put(0x0001, vr("OB"), "\0\1"s);
    put(0x0002, vr("UI"), text(attribute::sopClassUid));
    put(0x0003, vr("UI"), text(attribute::sopInstanceUid));
    put(0x0010, vr("UI"), transferSyntax_);
    put(0x0012, vr("UI"), uidFor("Cine Disc Viewer"));
    put(0x0013, vr("SH"), "CINEDISC_1");
    return meta;
}

void DicomWriter::write(std::ostream& stream) const {
    const auto encode = [](const Elements& elements) {
        std::string bytes;
        for (const auto& [tag, value] : elements) {
            bytes += elementHead(tag, value.vr, static_cast<std::uint32_t>(value.bytes.size()));
            bytes += value.bytes;
        }
        return bytes;
    };
    const auto meta = encode(metaInformation());
    std::string head(128, '\0');
    head += "DICM";
    head += elementHead({0x0002, 0x0000}, vr("UL"), 4);
    appendNumber(head, static_cast<std::uint32_t>(meta.size()));
    stream << head << meta << encode(elements_);
    if (!frames_.empty()) writePixels(stream);
}

void DicomWriter::writePixels(std::ostream& stream) const {
    constexpr std::uint32_t undefinedLength = 0xFFFFFFFF;
    const auto evenSize = [](const Bytes& frame) { return frame.size() + frame.size() % 2; };

    std::string offsets;
    std::size_t offset = 0;
    for (const auto& frame : frames_) {
        appendNumber(offsets, static_cast<std::uint32_t>(offset));
        offset += 8 + evenSize(frame);
    }
    stream << elementHead({0x7FE0, 0x0010}, vr("OB"), undefinedLength);
    stream << itemHead(item, offsets.size()) << offsets;
    for (const auto& frame : frames_) {
        stream << itemHead(item, evenSize(frame));
        stream.write(reinterpret_cast<const char*>(frame.data()), static_cast<std::streamsize>(frame.size()));
        if (frame.size() % 2 != 0) stream.put('\0');
    }
    stream << itemHead(sequenceEnd, 0);
}

}  // namespace cinedisc::discmaker
