#pragma once

#include "dicom/DataSet.h"
#include "dicom/TransferSyntax.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom {

/// Tag, representation and length in front of a value (PS3.5 section 7.1).
struct ElementHeader {
    static constexpr std::uint32_t undefinedLength = 0xFFFFFFFF;
    static constexpr std::size_t mostBytes = 12;

    Tag tag;
    Vr valueRepresentation = vr("UN");
    std::uint32_t length = 0;
    int bytes = 8;      ///< that the header takes
    Encoding encoding;  ///< of what the element holds, when that is a sequence

    bool isOpen() const { return length == undefinedLength; }
};

/// Bytes of the header of an item, in any encoding (PS3.5 section 7.5).
inline constexpr std::size_t itemHeader = 8;

/// Reads an element header from the next bytes, up to 12 of them; nothing when they are too few. `room` is
/// how many bytes the value may take at most, header included: where letters that are no representation stand
/// in an explicit encoding, it decides between the ways in which they can have been written.
std::optional<ElementHeader> readElementHeader(std::span<const std::byte> bytes, Encoding encoding,
                                               std::uint64_t room);

/// The encoding that the first element of a data set shows, `declared` where it leaves the choice: meta
/// headers lie.
Encoding sniffEncoding(std::span<const std::byte> firstBytes, Encoding declared);

/// Whether the bytes look like the first element of a data set, for files without the prefix that says so.
bool looksLikeDataSet(std::span<const std::byte> firstBytes, std::uint64_t fileSize);

}  // namespace cinedisc::dicom
