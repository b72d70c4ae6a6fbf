#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace cinedisc::dicom::codecs {

/// The entropy-coded data of one JPEG scan with the stuffed zero bytes taken out (ITU-T T.81 B.1.1.5), cut at
/// restart markers. Zero bytes follow the last segment, so that a reader may run past the end of its segment
/// and notice later.
class EntropyData {
  public:
    struct Segment {
        std::size_t begin = 0, end = 0;  ///< offsets into the bytes
        std::uint8_t endedBy = 0;        ///< the marker behind it, 0 at the end of the stream
    };

    /// Takes the data from the start of `coded` up to the first marker that is no restart marker. At least
    /// `padding` zero bytes follow it. No more than `mostSegments` are told apart.
    EntropyData(std::span<const std::uint8_t> coded, std::size_t padding, std::size_t mostSegments);

    const std::uint8_t* bytes() const { return bytes_.get(); }
    const std::vector<Segment>& segments() const { return segments_; }
    /// How many bytes of `coded` were taken, without the marker behind them.
    std::size_t codedLength() const { return codedLength_; }

  private:
    std::unique_ptr<std::uint8_t[]> bytes_;
    std::vector<Segment> segments_;
    std::size_t codedLength_ = 0;
};

}  // namespace cinedisc::dicom::codecs
