#pragma once

#include "dicom/Tag.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace cinedisc::test {

using Bytes = std::vector<std::byte>;

/// Bytes out of whole numbers or text, for values and code streams written down in tests.
Bytes bytesOf(std::initializer_list<int> values);
Bytes bytesOf(const std::string& text);

/// How a sequence says where it ends.
enum class LengthForm { Undefined, Explicit };

/// The elements of a data set or of a sequence item. Putting a tag that is there already replaces it;
/// otherwise the element goes where the order of tags asks for it.
class DicomItem {
  public:
    /// Text of any VR, padded to even length.
    DicomItem& text(dicom::Tag tag, const char* vr, const std::string& value);
    /// Whole numbers of a binary VR: US SS UL SL UV SV AT.
    DicomItem& numbers(dicom::Tag tag, const char* vr, const std::vector<std::int64_t>& values);
    /// FL and FD.
    DicomItem& reals(dicom::Tag tag, const char* vr, const std::vector<double>& values);
    /// Bytes as little endian has them; big endian files swap them by the VR's unit.
    DicomItem& binary(dicom::Tag tag, const char* vr, Bytes value);
    DicomItem& sequence(dicom::Tag tag, std::vector<DicomItem> items,
                        LengthForm form = LengthForm::Undefined);
    DicomItem& remove(dicom::Tag tag);

  private:
    friend class DicomWriter;
    struct Element {
        dicom::Tag tag;
        std::string vr;
        Bytes value;
        std::vector<DicomItem> items;
        LengthForm form = LengthForm::Undefined;
        bool encapsulated = false;  ///< value holds the items and the delimiter already
    };
    Element& place(Element element);
    friend class DicomBuilder;

    std::vector<Element> elements_;
};

/// The encodings a data set can be written in.
enum class Encoding { ImplicitLittle, ExplicitLittle, ExplicitBig, Deflated };
enum class FilePart { Present, Absent };
/// Where encapsulated pixels say that their frames begin.
enum class OffsetTable { Empty, Filled, Extended };

/// Builds DICOM files in memory for tests: a data set, the way it is written, and native or encapsulated
/// pixels. The outcome depends on nothing but the calls.
class DicomBuilder : public DicomItem {
  public:
    /// An empty data set in explicit little endian.
    DicomBuilder() = default;
    /// The header of a grey XA image, unsigned, BitsStored as given; pixels are still to be put.
    static DicomBuilder image(int rows, int columns, int frames = 1, int bitsAllocated = 8,
                              int bitsStored = 8);

    /// Sets the syntax named in the meta header, and the encoding that belongs to it.
    DicomBuilder& transferSyntax(const std::string& uid);
    /// Writes the data set otherwise than the meta header says.
    DicomBuilder& encoding(Encoding encoding);
    DicomBuilder& preamble(FilePart part);
    DicomBuilder& metaHeader(FilePart part);
    /// Value written as group 0002's length instead of the right one.
    DicomBuilder& metaLength(std::uint32_t wrong);
    /// Bytes after the last element.
    DicomBuilder& trailing(Bytes bytes);

    /// Native pixel data; `vr` OB or OW.
    DicomBuilder& pixels(Bytes value, const char* vr = "OW");
    /// Native pixels that fill the header's size: a gradient that differs from frame to frame.
    DicomBuilder& gradientPixels();
    /// One code stream a frame, each cut into `fragmentsPerFrame` fragments.
    DicomBuilder& encapsulatedFrames(const std::vector<Bytes>& frames, OffsetTable table,
                                     int fragmentsPerFrame = 1);
    /// Fragments and offset table entries exactly as given; `delimiter` absent leaves the sequence open.
    DicomBuilder& encapsulated(const std::vector<Bytes>& fragments, const std::vector<std::uint32_t>& offsets,
                               FilePart delimiter = FilePart::Present);

    Bytes build() const;
    void writeTo(const std::filesystem::path& path) const;

  private:
    std::string syntax_ = "1.2.840.10008.1.2.1";
    Encoding encoding_ = Encoding::ExplicitLittle;
    FilePart preamble_ = FilePart::Present;
    FilePart metaHeader_ = FilePart::Present;
    std::int64_t metaLength_ = -1;
    Bytes trailing_;
    int rows_ = 0, columns_ = 0, frames_ = 1, bitsAllocated_ = 8, bitsStored_ = 8;
};

}  // namespace cinedisc::test
