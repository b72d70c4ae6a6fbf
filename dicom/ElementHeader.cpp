#include "dicom/ElementHeader.h"

#include "dicom/Tags.h"
#include "dicom/ValueRepresentation.h"

namespace cinedisc::dicom {

namespace {

constexpr std::size_t shortForm = 8;
constexpr std::size_t longForm = 12;

Vr lettersAt(const std::byte* at) { return load16(at, ByteOrder::Big); }

bool isPrintable(std::byte letter) { return letter >= std::byte{0x20} && letter <= std::byte{0x7E}; }

class Reader {
  public:
    Reader(std::span<const std::byte> bytes, Encoding encoding, std::uint64_t room)
        : bytes_(bytes), encoding_(encoding), room_(room) {}

    std::optional<ElementHeader> read() {
        if (bytes_.size() < shortForm) return std::nullopt;
        header_.tag = {number16(0), number16(2)};
        header_.encoding = encoding_;
        if (!encoding_.explicitVr || header_.tag.group == tags::Item.group) return implicitForm();
        const Vr letters = lettersAt(&bytes_[4]);
        if (isKnownVr(letters)) {
            header_.valueRepresentation = letters;
            return hasLongLength(letters) ? explicitLong() : explicitShort();
        }
        return brokenForm();
    }

  private:
    std::uint16_t number16(std::size_t at) const { return load16(&bytes_[at], encoding_.order); }
    std::uint32_t number32(std::size_t at) const { return load32(&bytes_[at], encoding_.order); }

    std::optional<ElementHeader> implicitForm() {
        header_.length = number32(4);
        header_.encoding.explicitVr = encoding_.explicitVr && header_.tag.group == tags::Item.group;
        if (header_.tag.group != tags::Item.group) header_.valueRepresentation = usualVr(header_.tag);
        return header_;
    }

    std::optional<ElementHeader> explicitShort() {
        header_.length = number16(6);
        return header_;
    }

    std::optional<ElementHeader> explicitLong() {
        if (bytes_.size() < longForm) return std::nullopt;
        header_.length = number32(8);
        header_.bytes = longForm;
        // An unknown value of undefined length is a sequence in implicit little endian (PS3.5 section 6.2.2).
        if (header_.valueRepresentation == vr("UN")) header_.encoding = implicitLittle;
        return header_;
    }

    /// What stands where the letters should be is none of them: a representation that was invented later or
    /// never, or an element that a careless program copied out of an implicit data set.
    std::optional<ElementHeader> brokenForm() {
        const bool reservedIsZero = number16(6) == 0;
        if (isPrintable(bytes_[4]) && isPrintable(bytes_[5])) {
            const bool fitsLong =
                reservedIsZero && bytes_.size() >= longForm && number32(8) + longForm <= room_;
            return fitsLong && number32(8) > 0 ? explicitLong() : explicitShort();
        }
        const bool noLetters = number16(4) == 0 && !reservedIsZero;
        return noLetters ? explicitShort() : implicitForm();
    }

    std::span<const std::byte> bytes_;
    Encoding encoding_;
    std::uint64_t room_;
    ElementHeader header_;
};

}  // namespace

std::optional<ElementHeader> readElementHeader(std::span<const std::byte> bytes, Encoding encoding,
                                               std::uint64_t room) {
    return Reader(bytes, encoding, room).read();
}

Encoding sniffEncoding(std::span<const std::byte> firstBytes, Encoding declared) {
    if (firstBytes.size() < shortForm) return declared;
    Encoding found = declared;
    // Groups of first elements are small numbers: read the wrong way round they are large ones.
    const auto little = load16(firstBytes.data()), big = load16(firstBytes.data(), ByteOrder::Big);
    if (little != big) found.order = little < big ? ByteOrder::Little : ByteOrder::Big;
    found.explicitVr = isKnownVr(lettersAt(&firstBytes[4]));
    if (found.explicitVr != declared.explicitVr) {
        // A single bad element in front does not make a data set implicit: the length it would have must be
        // sane.
        constexpr std::uint32_t sane = 0x10000;
        const std::uint32_t length = load32(&firstBytes[4], found.order);
        if (!found.explicitVr && length >= sane && length != ElementHeader::undefinedLength)
            found.explicitVr = true;
    }
    return found;
}

bool looksLikeDataSet(std::span<const std::byte> firstBytes, std::uint64_t fileSize) {
    if (firstBytes.size() < shortForm) return false;
    const Encoding encoding = sniffEncoding(firstBytes, implicitLittle);
    const auto header = readElementHeader(firstBytes, encoding, fileSize);
    constexpr std::uint16_t lastUsualGroup = 0x0028;
    const bool usualGroup = header && header->tag.group <= lastUsualGroup && header->tag.group % 2 == 0;
    const bool usualElement = usualGroup && (header->tag.element > 0 || header->length == 4);
    return usualElement && (header->isOpen() || header->bytes + std::uint64_t{header->length} <= fileSize);
}

}  // namespace cinedisc::dicom
