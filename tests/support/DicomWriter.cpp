#include "tests/support/DicomWriter.h"

#include <algorithm>
#include <string_view>

namespace cinedisc::test {

namespace {

constexpr std::uint32_t undefinedLength = 0xFFFFFFFF;

bool hasLongLength(std::string_view vr) {
    for (const std::string_view longForm :
         {"OB", "OD", "OF", "OL", "OV", "OW", "SQ", "SV", "UC", "UN", "UR", "UT", "UV"})
        if (vr == longForm) return true;
    return false;
}

/// Size of what is swapped in big endian.
std::size_t unitOf(std::string_view vr) {
    if (vr == "US" || vr == "SS" || vr == "OW" || vr == "AT") return 2;
    if (vr == "UL" || vr == "SL" || vr == "FL" || vr == "OF" || vr == "OL") return 4;
    if (vr == "FD" || vr == "OD" || vr == "SV" || vr == "UV" || vr == "OV") return 8;
    return 1;
}

}  // namespace

void DicomWriter::writeNumber(std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) {
        const int shift = 8 * (bigEndian_ ? size - 1 - i : i);
        out_.push_back(static_cast<std::byte>(value >> shift & 0xFF));
    }
}

void DicomWriter::writeItemTag(std::uint16_t element, std::uint32_t length) {
    writeNumber(0xFFFE, 2);
    writeNumber(element, 2);
    writeNumber(length, 4);
}

void DicomWriter::writeHeader(dicom::Tag tag, const std::string& vr, std::uint32_t length) {
    writeNumber(tag.group, 2);
    writeNumber(tag.element, 2);
    if (!implicit_) {
        append(bytesOf(vr));
        if (!hasLongLength(vr)) return writeNumber(length, 2);
        writeNumber(0, 2);
    }
    writeNumber(length, 4);
}

void DicomWriter::writeSequence(const DicomItem::Element& element) {
    DicomWriter inner(implicit_    ? Encoding::ImplicitLittle
                      : bigEndian_ ? Encoding::ExplicitBig
                                   : Encoding::ExplicitLittle);
    const bool open = element.form == LengthForm::Undefined;
    for (const DicomItem& item : element.items) {
        DicomWriter content(inner);
        content.out_.clear();
        content.write(item);
        inner.writeItemTag(0xE000, open ? undefinedLength : static_cast<std::uint32_t>(content.out_.size()));
        inner.append(content.out_);
        if (open) inner.writeItemTag(0xE00D, 0);
    }
    if (open) inner.writeItemTag(0xE0DD, 0);
    writeHeader(element.tag, "SQ", open ? undefinedLength : static_cast<std::uint32_t>(inner.out_.size()));
    append(inner.out_);
}

void DicomWriter::writeElement(const DicomItem::Element& element) {
    if (element.vr == "SQ") return writeSequence(element);
    writeHeader(element.tag, element.vr,
                element.encapsulated ? undefinedLength : static_cast<std::uint32_t>(element.value.size()));
    Bytes value = element.value;
    const std::size_t unit = bigEndian_ ? unitOf(element.vr) : 1;
    for (std::size_t at = 0; unit > 1 && at + unit <= value.size(); at += unit)
        std::reverse(value.begin() + static_cast<std::ptrdiff_t>(at),
                     value.begin() + static_cast<std::ptrdiff_t>(at + unit));
    append(value);
}

void DicomWriter::write(const DicomItem& item) {
    for (const auto& element : item.elements_) writeElement(element);
}

Bytes deflateStored(const Bytes& content) {
    constexpr std::size_t blockLimit = 0xFFFF;
    DicomWriter out(Encoding::ExplicitLittle);
    std::size_t at = 0;
    do {
        const std::size_t length = std::min(blockLimit, content.size() - at);
        out.writeNumber(at + length == content.size() ? 1 : 0, 1);
        out.writeNumber(length, 2);
        out.writeNumber(~length & 0xFFFF, 2);
        out.append(Bytes(content.begin() + static_cast<std::ptrdiff_t>(at),
                         content.begin() + static_cast<std::ptrdiff_t>(at + length)));
        at += length;
    } while (at < content.size());
    return out.take();
}

}  // namespace cinedisc::test
