#pragma once

#include "discmaker/encoding/Attribute.h"

#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cinedisc::discmaker {

/// Writes one DICOM file (PS3.10) with explicit little endian header and encapsulated pixels (PS3.5 annex
/// A.4), one fragment a frame, with a filled offset table. Elements may be put in any order.
class DicomWriter {
  public:
    using Bytes = std::vector<std::uint8_t>;

    /// `transferSyntax`: an encapsulated one.
    explicit DicomWriter(std::string transferSyntax) : transferSyntax_(std::move(transferSyntax)) {}

    /// Text as UTF-8, values separated by backslashes. Put SOP class and instance UID at least.
    void putText(Attribute attribute, std::string_view text);
    /// Numbers for attributes of type DS or IS, in as few digits as tell them apart, at most nine.
    void putNumbers(Attribute attribute, std::initializer_list<double> values);
    /// A value for attributes of type US.
    void putShort(Attribute attribute, std::uint16_t value);
    /// A value for attributes of type AT.
    void putPointer(Attribute attribute, Attribute target);
    /// The compressed frames, in order.
    void putFrames(std::vector<Bytes> frames) { frames_ = std::move(frames); }

    /// The whole file; what can go wrong while writing is in the stream's state.
    void write(std::ostream& stream) const;

  private:
    struct Value {
        dicom::Vr vr;
        std::string bytes;
    };
    using Elements = std::map<dicom::Tag, Value>;

    std::string text(Attribute attribute) const;
    Elements metaInformation() const;
    void writePixels(std::ostream& stream) const;

    std::string transferSyntax_;
    Elements elements_;
    std::vector<Bytes> frames_;
};

}  // namespace cinedisc::discmaker
