#pragma once

#include "dicom/Tag.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace cinedisc::dicom {

class DataSet;

/// A value representation as its two letters, e.g. vr("UI").
using Vr = std::uint16_t;
constexpr Vr vr(const char (&name)[3]) {
    return static_cast<Vr>(static_cast<unsigned char>(name[0]) << 8 | static_cast<unsigned char>(name[1]));
}

/// One data element of a header. Values are kept as they stand in the file, little endian, except the pixels
/// and other values above a limit, of which only place and length are kept.
struct Element {
    Tag tag;
    Vr valueRepresentation = vr("UN");
    std::uint64_t offset = 0;      ///< of the value, in the file (after inflating, for the deflated syntax)
    std::uint64_t length = 0;      ///< of the value, bytes; what was found for an undefined length
    bool held = true;              ///< false: the value was left in the file
    std::vector<std::byte> value;  ///< the bytes, when held
    std::vector<DataSet> items;    ///< for sequences
};

/// The elements of a data set or sequence item, in file order. Results are empty when the element is missing,
/// empty or of another kind: files from the field are not to be trusted.
class DataSet {
  public:
    std::vector<Element> elements;

    const Element* find(Tag tag) const;
    /// Raw text, outer padding removed, in the file's own character set.
    std::string string(Tag tag) const;
    /// Raw text split at backslashes, each value trimmed.
    std::vector<std::string> strings(Tag tag) const;
    /// Whole numbers of a binary (US SS UL SL UV SV AT) or text (IS, DS) element.
    std::vector<std::int64_t> integers(Tag tag) const;
    std::optional<std::int64_t> integer(Tag tag) const;
    std::vector<double> decimals(Tag tag) const;
    std::optional<double> decimal(Tag tag) const;
    /// The items of a sequence, empty when it is missing.
    const std::vector<DataSet>& items(Tag tag) const;
};

}  // namespace cinedisc::dicom
