#pragma once

#include "dicom/Tag.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cinedisc::test {

using Bytes = std::vector<std::byte>;

/// Bytes out of whole numbers or text, for values and code streams written down in tests.
Bytes bytesOf(std::initializer_list<int> values);
Bytes bytesOf(std::string_view text);
/// A whole number in little endian.
Bytes numberBytes(std::uint64_t value, std::size_t size);
Bytes operator+(Bytes first, const Bytes& second);
/// A deflate stream with the wrapper of zlib around it, of two bytes in front and four behind.
Bytes wrappedDeflate(const Bytes& content);

/// How a value says where it ends.
enum class LengthForm { Undefined, Explicit };

/// The elements of a data set or of a sequence item. Putting a tag that is there already replaces it;
/// otherwise the element goes where the order of tags asks for it.
struct DicomItem {
    struct Element {
        dicom::Tag tag;
        std::string vr;
        Bytes value;  ///< as little endian has it; big endian files swap it by the VR's unit
        std::vector<DicomItem> items;
        LengthForm form = LengthForm::Explicit;
    };

    /// Text of any VR, padded to even length.
    DicomItem& text(dicom::Tag tag, const char* vr, std::string_view value);
    /// Whole numbers of a binary VR: US SS UL SL UV SV, AT as pairs of 16 bits, the group first.
    DicomItem& numbers(dicom::Tag tag, const char* vr, const std::vector<std::int64_t>& values);
    /// FL and FD.
    DicomItem& reals(dicom::Tag tag, const char* vr, const std::vector<double>& values);
    DicomItem& binary(dicom::Tag tag, const char* vr, Bytes value);
    DicomItem& sequence(dicom::Tag tag, std::vector<DicomItem> items,
                        LengthForm form = LengthForm::Undefined);
    DicomItem& put(Element element);
    DicomItem& remove(dicom::Tag tag);

    std::vector<Element> elements;
};

/// The encodings a data set can be written in.
enum class Encoding { ImplicitLittle, ExplicitLittle, ExplicitBig, Deflated };
enum class FilePart { Present, Absent };
/// The elements in one of the encodings of PS3.5 chapter 7 and annex A.
Bytes encoded(const DicomItem& item, Encoding encoding);

/// The syntax that the meta header of a file names, and how the file is written indeed.
struct FileForm {
    std::string syntax = "1.2.840.10008.1.2.1";
    Encoding encoding = Encoding::ExplicitLittle;
    FilePart preamble = FilePart::Present, metaHeader = FilePart::Present;
    std::optional<std::uint32_t> metaLength = {};  ///< instead of the right one
};

/// Where encapsulated pixels say that their frames begin.
enum class OffsetTable { Empty, Filled, Extended };

/// Builds DICOM files in memory for tests: a data set, the way it is written, and native or encapsulated
/// pixels. The outcome depends on nothing but the calls.
struct DicomBuilder : DicomItem {
    /// The header of a grey XA image, unsigned, BitsStored as given; pixels are still to be put.
    static DicomBuilder image(int rows, int columns, int frames = 1, int bitsAllocated = 8,
                              int bitsStored = 8);

    /// Sets the syntax named in the meta header, and the encoding that belongs to it.
    DicomBuilder& transferSyntax(const std::string& uid);
    /// Native pixel data; `vr` OB or OW.
    DicomBuilder& pixels(Bytes value, const char* vr = "OW");
    /// Native pixels that fill the header's size: a gradient that differs from frame to frame.
    DicomBuilder& gradientPixels();
    /// One code stream a frame, each in one fragment.
    DicomBuilder& encapsulatedFrames(std::vector<Bytes> frames, OffsetTable table);
    /// Fragments and offset table entries exactly as given; `delimiter` absent leaves the sequence open.
    DicomBuilder& encapsulated(const std::vector<Bytes>& fragments, const std::vector<std::uint32_t>& offsets,
                               FilePart delimiter = FilePart::Present);

    Bytes build() const;
    void writeTo(const std::filesystem::path& path) const;

    FileForm form;
    int rows = 0, columns = 0, frames = 1, bitsAllocated = 8, bitsStored = 8;
};

}  // namespace cinedisc::test
