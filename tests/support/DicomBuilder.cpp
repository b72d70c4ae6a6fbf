#include "tests/support/DicomBuilder.h"

#include "tests/support/DicomWriter.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <stdexcept>

namespace cinedisc::test {

using dicom::Tag;

namespace {

constexpr Tag pixelDataTag{0x7FE0, 0x0010};

int sizeOfNumber(const std::string& vr) {
    if (vr == "US" || vr == "SS") return 2;
    return vr == "UV" || vr == "SV" || vr == "OV" || vr == "FD" ? 8 : 4;
}

}  // namespace

Bytes bytesOf(std::initializer_list<int> values) {
    Bytes bytes;
    for (const int value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

Bytes bytesOf(const std::string& text) {
    Bytes bytes;
    for (const char letter : text) bytes.push_back(static_cast<std::byte>(letter));
    return bytes;
}

DicomItem::Element& DicomItem::place(Element element) {
    const auto at = std::lower_bound(elements_.begin(), elements_.end(), element.tag,
                                     [](const Element& each, Tag tag) { return each.tag < tag; });
    if (at != elements_.end() && at->tag == element.tag) return *at = std::move(element);
    return *elements_.insert(at, std::move(element));
}

DicomItem& DicomItem::text(Tag tag, const char* vr, const std::string& value) {
    Bytes bytes = bytesOf(value);
    if (bytes.size() % 2) bytes.push_back(std::string(vr) == "UI" ? std::byte{0} : std::byte{' '});
    return binary(tag, vr, std::move(bytes));
}

DicomItem& DicomItem::numbers(Tag tag, const char* vr, const std::vector<std::int64_t>& values) {
    DicomWriter writer(Encoding::ExplicitLittle);
    for (const std::int64_t value : values) {
        // An attribute tag is two numbers of 16 bits, the group first.
        const bool isTag = std::string(vr) == "AT";
        const auto bits = static_cast<std::uint64_t>(value);
        writer.writeNumber(isTag ? (bits >> 16 & 0xFFFF) | (bits & 0xFFFF) << 16 : bits, sizeOfNumber(vr));
    }
    return binary(tag, vr, writer.take());
}

DicomItem& DicomItem::reals(Tag tag, const char* vr, const std::vector<double>& values) {
    DicomWriter writer(Encoding::ExplicitLittle);
    for (const double value : values) {
        const bool wide = sizeOfNumber(vr) == 8;
        writer.writeNumber(wide ? std::bit_cast<std::uint64_t>(value)
                                : std::bit_cast<std::uint32_t>(static_cast<float>(value)),
                           wide ? 8 : 4);
    }
    return binary(tag, vr, writer.take());
}

DicomItem& DicomItem::binary(Tag tag, const char* vr, Bytes value) {
    Element element;
    element.tag = tag;
    element.vr = vr;
    element.value = std::move(value);
    place(std::move(element));
    return *this;
}

DicomItem& DicomItem::sequence(Tag tag, std::vector<DicomItem> items, LengthForm form) {
    Element element;
    element.tag = tag;
    element.vr = "SQ";
    element.items = std::move(items);
    element.form = form;
    place(std::move(element));
    return *this;
}

DicomItem& DicomItem::remove(Tag tag) {
    std::erase_if(elements_, [tag](const Element& each) { return each.tag == tag; });
    return *this;
}

DicomBuilder DicomBuilder::image(int rows, int columns, int frames, int bitsAllocated, int bitsStored) {
    DicomBuilder builder;
    builder.rows_ = rows;
    builder.columns_ = columns;
    builder.frames_ = frames;
    builder.bitsAllocated_ = bitsAllocated;
    builder.bitsStored_ = bitsStored;
    builder.text({0x0008, 0x0016}, "UI", "1.2.840.10008.5.1.4.1.1.12.1")
        .text({0x0008, 0x0018}, "UI", "1.2.3.4.5.6.7.8")
        .text({0x0008, 0x0060}, "CS", "XA")
        .text({0x0010, 0x0010}, "PN", "Sample^Person")
        .text({0x0010, 0x0020}, "LO", "P-1")
        .numbers({0x0028, 0x0002}, "US", {1})
        .text({0x0028, 0x0004}, "CS", "MONOCHROME2")
        .text({0x0028, 0x0008}, "IS", std::to_string(frames))
        .numbers({0x0028, 0x0010}, "US", {rows})
        .numbers({0x0028, 0x0011}, "US", {columns})
        .numbers({0x0028, 0x0100}, "US", {bitsAllocated})
        .numbers({0x0028, 0x0101}, "US", {bitsStored})
        .numbers({0x0028, 0x0102}, "US", {bitsStored - 1})
        .numbers({0x0028, 0x0103}, "US", {0});
    return builder;
}

DicomBuilder& DicomBuilder::transferSyntax(const std::string& uid) {
    syntax_ = uid;
    encoding_ = uid == "1.2.840.10008.1.2"        ? Encoding::ImplicitLittle
                : uid == "1.2.840.10008.1.2.2"    ? Encoding::ExplicitBig
                : uid == "1.2.840.10008.1.2.1.99" ? Encoding::Deflated
                                                  : Encoding::ExplicitLittle;
    return *this;
}

DicomBuilder& DicomBuilder::encoding(Encoding encoding) {
    encoding_ = encoding;
    return *this;
}

DicomBuilder& DicomBuilder::preamble(FilePart part) {
    preamble_ = part;
    return *this;
}

DicomBuilder& DicomBuilder::metaHeader(FilePart part) {
    metaHeader_ = part;
    return *this;
}

DicomBuilder& DicomBuilder::metaLength(std::uint32_t wrong) {
    metaLength_ = wrong;
    return *this;
}

DicomBuilder& DicomBuilder::trailing(Bytes bytes) {
    trailing_ = std::move(bytes);
    return *this;
}

DicomBuilder& DicomBuilder::pixels(Bytes value, const char* vr) {
    binary(pixelDataTag, vr, std::move(value));
    return *this;
}

DicomBuilder& DicomBuilder::gradientPixels() {
    DicomWriter writer(Encoding::ExplicitLittle);
    const std::uint64_t mask = (std::uint64_t{1} << bitsStored_) - 1;
    for (int frame = 0; frame < frames_; ++frame)
        for (int row = 0; row < rows_; ++row)
            for (int column = 0; column < columns_; ++column)
                writer.writeNumber(static_cast<std::uint64_t>(frame * 7 + row * 3 + column) & mask,
                                   bitsAllocated_ / 8);
    return pixels(writer.take(), bitsAllocated_ > 8 ? "OW" : "OB");
}

DicomBuilder& DicomBuilder::encapsulatedFrames(const std::vector<Bytes>& frames, OffsetTable table,
                                               int fragmentsPerFrame) {
    std::vector<Bytes> fragments;
    std::vector<std::uint32_t> offsets;
    std::vector<std::int64_t> extendedOffsets, extendedLengths;
    std::uint32_t position = 0;
    for (Bytes frame : frames) {
        if (frame.size() % 2) frame.push_back(std::byte{0});
        offsets.push_back(position);
        extendedOffsets.push_back(position);
        extendedLengths.push_back(static_cast<std::int64_t>(frame.size()));
        std::size_t piece = (frame.size() / static_cast<std::size_t>(fragmentsPerFrame) + 1) / 2 * 2;
        piece = std::max<std::size_t>(piece, 2);
        for (int i = 0; i < fragmentsPerFrame; ++i) {
            const std::size_t from = std::min(frame.size(), piece * static_cast<std::size_t>(i));
            const std::size_t to =
                i + 1 == fragmentsPerFrame ? frame.size() : std::min(frame.size(), from + piece);
            fragments.emplace_back(frame.begin() + static_cast<std::ptrdiff_t>(from),
                                   frame.begin() + static_cast<std::ptrdiff_t>(to));
            position += static_cast<std::uint32_t>(to - from) + 8;
        }
    }
    if (table == OffsetTable::Extended) {
        numbers({0x7FE0, 0x0001}, "OV", extendedOffsets);
        numbers({0x7FE0, 0x0002}, "OV", extendedLengths);
    }
    if (table != OffsetTable::Filled) offsets.clear();
    return encapsulated(fragments, offsets);
}

DicomBuilder& DicomBuilder::encapsulated(const std::vector<Bytes>& fragments,
                                         const std::vector<std::uint32_t>& offsets, FilePart delimiter) {
    DicomWriter writer(Encoding::ExplicitLittle);
    const auto writeItem = [&writer](std::uint16_t element, std::size_t length) {
        writer.writeNumber(0xFFFE, 2);
        writer.writeNumber(element, 2);
        writer.writeNumber(length, 4);
    };
    writeItem(0xE000, offsets.size() * 4);
    for (const std::uint32_t offset : offsets) writer.writeNumber(offset, 4);
    for (const Bytes& fragment : fragments) {
        writeItem(0xE000, fragment.size());
        writer.append(fragment);
    }
    if (delimiter == FilePart::Present) writeItem(0xE0DD, 0);
    Element element;
    element.tag = pixelDataTag;
    element.vr = "OB";
    element.value = writer.take();
    element.encapsulated = true;
    place(std::move(element));
    return *this;
}

Bytes DicomBuilder::build() const {
    DicomWriter file(Encoding::ExplicitLittle);
    if (preamble_ == FilePart::Present) {
        file.append(Bytes(128));
        file.append(bytesOf("DICM"));
    }
    if (metaHeader_ == FilePart::Present) {
        DicomItem meta;
        meta.binary({0x0002, 0x0001}, "OB", bytesOf({0, 1})).text({0x0002, 0x0003}, "UI", "1.2.3.4.5.6.7.8");
        if (!syntax_.empty()) meta.text({0x0002, 0x0010}, "UI", syntax_);
        DicomWriter content(Encoding::ExplicitLittle);
        content.write(meta);
        const Bytes bytes = content.take();
        DicomItem length;
        length.numbers({0x0002, 0x0000}, "UL",
                       {metaLength_ < 0 ? static_cast<std::int64_t>(bytes.size()) : metaLength_});
        file.write(length);
        file.append(bytes);
    }
    DicomWriter dataSet(encoding_);
    dataSet.write(*this);
    file.append(encoding_ == Encoding::Deflated ? deflateStored(dataSet.take()) : dataSet.take());
    file.append(trailing_);
    return file.take();
}

void DicomBuilder::writeTo(const std::filesystem::path& path) const {
    const Bytes bytes = build();
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace cinedisc::test
