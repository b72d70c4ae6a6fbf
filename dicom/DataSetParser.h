#pragma once

#include "dicom/DataSet.h"
#include "dicom/DecodeError.h"
#include "dicom/ElementHeader.h"
#include "dicom/ForwardBuffer.h"
#include "dicom/PixelElement.h"

#include <cstdint>
#include <optional>

namespace cinedisc::dicom {

/// Parses the elements of a file up to its pixel data, going forward only.
///
/// Made for files that are wrong: nesting, the number of elements and the bytes held are bounded, lengths are
/// checked against what surrounds them, and what goes wrong inside a part of known length costs that part
/// alone.
class DataSetParser {
  public:
    explicit DataSetParser(ForwardBuffer& buffer) : buffer_(buffer) {}

    /// Adds the elements of group 0002, which are explicit little endian whatever follows them. Where they
    /// end is seen from the tags, not from the length that their first element tells: that is often wrong.
    void parseFileMeta(DataSet& into);

    /// Adds the elements in front of the pixel data, or all of them when there is none. An error says where
    /// the header breaks off; what came before it stands.
    std::optional<DecodeError> parse(DataSet& into, Encoding encoding);

    const std::optional<PixelElement>& pixels() const { return pixels_; }

  private:
    enum class End { Reached, Broken };
    struct Level {
        Encoding encoding;
        std::uint64_t end = 0;     ///< no value may go beyond
        bool hasKnownEnd = false;  ///< a length told it: errors inside cost this level alone
        int depth = 0;
    };

    End parseElements(DataSet& into, const Level& level);
    End parseElement(DataSet& into, const ElementHeader& header, const Level& level);
    End parseItems(Element& sequence, const Level& level);
    End parseItem(DataSet& into, std::uint32_t length, const Level& level);
    End skipFragments(const Level& level);
    void readValue(Element& element, const Encoding& encoding);
    bool holdsItems(const ElementHeader& header, const Level& level);
    bool takePixels(DataSet& into, const ElementHeader& header);
    void tellFrameBytes(const DataSet& header);
    std::optional<ElementHeader> peekHeader(const Level& level);
    End broken(DecodeError::Kind kind, Tag tag);
    End brokenOff(Tag tag);

    ForwardBuffer& buffer_;
    std::optional<PixelElement> pixels_;
    std::optional<DecodeError> error_;
    std::uint64_t elementCount_ = 0;
    std::uint64_t bytesHeld_ = 0;
    bool frameBytesTold_ = false;
};

}  // namespace cinedisc::dicom
