#pragma once

#include "tests/support/DicomBuilder.h"

#include <cstdint>

namespace cinedisc::test {

/// Writes elements in one of the encodings of PS3.5 chapter 7 and annex A.
class DicomWriter {
  public:
    explicit DicomWriter(Encoding encoding)
        : bigEndian_(encoding == Encoding::ExplicitBig), implicit_(encoding == Encoding::ImplicitLittle) {}

    void write(const DicomItem& item);
    void writeNumber(std::uint64_t value, int size);
    void append(const Bytes& bytes) { out_.insert(out_.end(), bytes.begin(), bytes.end()); }
    Bytes take() { return std::move(out_); }

  private:
    void writeElement(const DicomItem::Element& element);
    void writeHeader(dicom::Tag tag, const std::string& vr, std::uint32_t length);
    void writeItemTag(std::uint16_t element, std::uint32_t length);
    void writeSequence(const DicomItem::Element& element);

    bool bigEndian_, implicit_;
    Bytes out_;
};

/// A deflate stream of stored blocks (RFC 1951): larger than its content, but valid.
Bytes deflateStored(const Bytes& content);

}  // namespace cinedisc::test
