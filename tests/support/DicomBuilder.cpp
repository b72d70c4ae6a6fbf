#include "tests/support/DicomBuilder.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <span>
#include <stdexcept>
#include <zlib.h>

namespace cinedisc::test {

using dicom::Tag;

namespace {

constexpr std::uint32_t itemTag = 0xE000FFFE, itemEnd = 0xE00DFFFE, sequenceEnd = 0xE0DDFFFE;
constexpr std::uint32_t undefinedLength = 0xFFFFFFFF;

bool isAmong(std::string_view list, std::string_view vr) { return list.find(vr) != std::string_view::npos; }

/// Size of what is swapped in big endian.
std::size_t unitOf(std::string_view vr) {
    if (isAmong("US SS OW AT", vr)) return 2;
    if (isAmong("UL SL FL OF OL", vr)) return 4;
    return isAmong("FD OD SV UV OV", vr) ? 8 : 1;
}

void append(Bytes& to, const Bytes& bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

}  // namespace

Bytes bytesOf(std::initializer_list<int> values) {
    Bytes bytes;
    for (const int value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

Bytes bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

Bytes numberBytes(std::uint64_t value, std::size_t size) {
    Bytes bytes;
    for (; bytes.size() < size; value >>= 8) bytes.push_back(static_cast<std::byte>(value & 0xFF));
    return bytes;
}

Bytes operator+(Bytes first, const Bytes& second) {
    append(first, second);
    return first;
}

Bytes wrappedDeflate(const Bytes& content) {
    uLongf length = compressBound(content.size());
    Bytes out(length);
    compress(reinterpret_cast<Bytef*>(out.data()), &length, reinterpret_cast<const Bytef*>(content.data()),
             content.size());
    out.resize(length);
    return out;
}

Bytes encoded(const DicomItem& item, Encoding encoding) {
    if (encoding == Encoding::Deflated) {
        const Bytes wrapped = wrappedDeflate(encoded(item, Encoding::ExplicitLittle));
        return {wrapped.begin() + 2, wrapped.end() - 4};
    }
    const auto ordered = [&](Bytes bytes, std::string_view vr) {
        const auto unit = std::ptrdiff_t(encoding == Encoding::ExplicitBig ? unitOf(vr) : 1);
        for (auto at = bytes.begin(); bytes.end() - at >= unit; at += unit) std::reverse(at, at + unit);
        return bytes;
    };
    const auto tagBytes = [&](std::uint32_t groupLast) { return ordered(numberBytes(groupLast, 4), "AT"); };
    const auto length = [&](std::size_t value) { return ordered(numberBytes(value, 4), "UL"); };
    Bytes out;
    for (const auto& [tag, vr, content, items, form] : item.elements) {
        const bool isOpen = form == LengthForm::Undefined;
        Bytes value = ordered(content, vr);
        for (const DicomItem& each : items) {
            const Bytes inside = encoded(each, encoding);
            append(value, tagBytes(itemTag) + length(isOpen ? undefinedLength : inside.size()) + inside);
            if (isOpen) append(value, tagBytes(itemEnd) + length(0));
        }
        if (isOpen && vr == "SQ") append(value, tagBytes(sequenceEnd) + length(0));
        const Bytes whole = length(isOpen ? undefinedLength : value.size());
        append(out, tagBytes(tag.group | std::uint32_t{tag.element} << 16));
        if (encoding == Encoding::ImplicitLittle)
            append(out, whole);
        else if (isAmong("OB OD OF OL OV OW SQ SV UC UN UR UT UV", vr))
            append(out, bytesOf(vr) + Bytes(2) + whole);
        else
            append(out, bytesOf(vr) + ordered(numberBytes(value.size(), 2), "US"));
        append(out, value);
    }
    return out;
}

DicomItem& DicomItem::put(Element element) {
    remove(element.tag);
    elements.insert(std::ranges::lower_bound(elements, element.tag, {}, &Element::tag), std::move(element));
    return *this;
}

DicomItem& DicomItem::text(Tag tag, const char* vr, std::string_view value) {
    Bytes bytes = bytesOf(value);
    if (bytes.size() % 2) bytes.push_back(std::string_view(vr) == "UI" ? std::byte{0} : std::byte{' '});
    return binary(tag, vr, std::move(bytes));
}

DicomItem& DicomItem::numbers(Tag tag, const char* vr, const std::vector<std::int64_t>& values) {
    Bytes bytes;
    for (const std::int64_t value : values)
        append(bytes, numberBytes(static_cast<std::uint64_t>(value), unitOf(vr)));
    return binary(tag, vr, std::move(bytes));
}

DicomItem& DicomItem::reals(Tag tag, const char* vr, const std::vector<double>& values) {
    Bytes bytes;
    for (const double value : values)
        append(bytes, unitOf(vr) == 8 ? numberBytes(std::bit_cast<std::uint64_t>(value), 8)
                                      : numberBytes(std::bit_cast<std::uint32_t>(float(value)), 4));
    return binary(tag, vr, std::move(bytes));
}

DicomItem& DicomItem::binary(Tag tag, const char* vr, Bytes value) {
    return put({tag, vr, std::move(value), {}});
}

DicomItem& DicomItem::sequence(Tag tag, std::vector<DicomItem> items, LengthForm form) {
    return put({tag, "SQ", {}, std::move(items), form});
}

DicomItem& DicomItem::remove(Tag tag) {
    std::erase_if(elements, [tag](const Element& each) { return each.tag == tag; });
    return *this;
}

DicomBuilder DicomBuilder::image(int rows, int columns, int frames, int bitsAllocated, int bitsStored) {
    DicomBuilder builder{{}, {}, rows, columns, frames, bitsAllocated, bitsStored};
    builder.text({0x0008, 0x0016}, "UI", "1.2.840.10008.5.1.4.1.1.12.1")
        .text({0x0008, 0x0018}, "UI", "1.2.3.4.5.6.7.8")
        .text({0x0008, 0x0060}, "CS", "XA")
        .text({0x0010, 0x0010}, "PN", "Sample^Person")
        .text({0x0010, 0x0020}, "LO", "P-1")
        .text({0x0028, 0x0004}, "CS", "MONOCHROME2")
        .text({0x0028, 0x0008}, "IS", std::to_string(frames));
    for (const auto& [element, value] : {std::pair<int, int>{0x0002, 1},
                                         {0x0010, rows},
                                         {0x0011, columns},
                                         {0x0100, bitsAllocated},
                                         {0x0101, bitsStored},
                                         {0x0102, bitsStored - 1},
                                         {0x0103, 0}})
        builder.numbers({0x0028, static_cast<std::uint16_t>(element)}, "US", {value});
    return builder;
}

DicomBuilder& DicomBuilder::transferSyntax(const std::string& uid) {
    form.syntax = uid;
    form.encoding = uid == "1.2.840.10008.1.2"        ? Encoding::ImplicitLittle
                    : uid == "1.2.840.10008.1.2.2"    ? Encoding::ExplicitBig
                    : uid == "1.2.840.10008.1.2.1.99" ? Encoding::Deflated
                                                      : Encoding::ExplicitLittle;
    return *this;
}

DicomBuilder& DicomBuilder::pixels(Bytes value, const char* vr) {
    binary({0x7FE0, 0x0010}, vr, std::move(value));
    return *this;
}

DicomBuilder& DicomBuilder::gradientPixels() {
    Bytes cells;
    const int mask = (1 << bitsStored) - 1;
    for (int i = 0; i < frames * rows * columns; ++i) {
        const int frame = i / (rows * columns), row = i / columns % rows, column = i % columns;
        append(cells, numberBytes(std::uint64_t((frame * 7 + row * 3 + column) & mask),
                                  std::size_t(bitsAllocated) / 8));
    }
    return pixels(std::move(cells), bitsAllocated > 8 ? "OW" : "OB");
}

DicomBuilder& DicomBuilder::encapsulatedFrames(std::vector<Bytes> frames, OffsetTable table) {
    std::vector<std::int64_t> offsets, lengths;
    std::int64_t position = 0;
    for (Bytes& frame : frames) {
        frame.resize((frame.size() + 1) / 2 * 2);
        offsets.push_back(position);
        lengths.push_back(std::ssize(frame));
        position += 8 + lengths.back();
    }
    if (table == OffsetTable::Extended)
        numbers({0x7FE0, 0x0001}, "OV", offsets).numbers({0x7FE0, 0x0002}, "OV", lengths);
    if (table != OffsetTable::Filled) offsets.clear();
    return encapsulated(frames, {offsets.begin(), offsets.end()});
}

DicomBuilder& DicomBuilder::encapsulated(const std::vector<Bytes>& fragments,
                                         const std::vector<std::uint32_t>& offsets, FilePart delimiter) {
    Bytes table, value;
    for (const std::uint32_t offset : offsets) append(table, numberBytes(offset, 4));
    const auto putItem = [&value](const Bytes& content) {
        append(value, numberBytes(itemTag, 4) + numberBytes(content.size(), 4));
        append(value, content);
    };
    putItem(table);
    for (const Bytes& fragment : fragments) putItem(fragment);
    if (delimiter == FilePart::Present) append(value, numberBytes(sequenceEnd, 8));
    put({{0x7FE0, 0x0010}, "OB", std::move(value), {}, LengthForm::Undefined});
    return *this;
}

Bytes DicomBuilder::build() const {
    Bytes file;
    if (form.preamble == FilePart::Present) file = Bytes(128) + bytesOf("DICM");
    if (form.metaHeader == FilePart::Present) {
        DicomItem meta, length;
        meta.binary({0x0002, 0x0001}, "OB", bytesOf({0, 1})).text({0x0002, 0x0003}, "UI", "1.2.3.4.5.6.7.8");
        if (!form.syntax.empty()) meta.text({0x0002, 0x0010}, "UI", form.syntax);
        const Bytes content = encoded(meta, Encoding::ExplicitLittle);
        const auto size = static_cast<std::uint32_t>(content.size());
        length.numbers({0x0002, 0x0000}, "UL", {form.metaLength.value_or(size)});
        append(file, encoded(length, Encoding::ExplicitLittle) + content);
    }
    return std::move(file) + encoded(*this, form.encoding);
}

void DicomBuilder::writeTo(const std::filesystem::path& path) const {
    const Bytes bytes = build();
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace cinedisc::test
