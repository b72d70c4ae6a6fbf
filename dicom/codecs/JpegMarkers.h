#pragma once

#include "dicom/Result.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

/// The markers of a JPEG stream that are acted upon (ITU-T T.81 table B.1).
namespace marker {
inline constexpr std::uint8_t tem = 0x01, sof0 = 0xC0, sof1 = 0xC1, sof2 = 0xC2, sof3 = 0xC3, dht = 0xC4,
                              dac = 0xCC, sof15 = 0xCF, rst0 = 0xD0, rst7 = 0xD7, soi = 0xD8, eoi = 0xD9,
                              sos = 0xDA, dqt = 0xDB, dri = 0xDD, app0 = 0xE0, app8 = 0xE8, app14 = 0xEE,
                              sof55 = 0xF7, lse = 0xF8;
}

/// Whether a marker starts a frame of any JPEG process, JPEG-LS included.
bool isStartOfFrame(std::uint8_t code);

struct JpegMarker {
    std::uint8_t code = 0;
    std::span<const std::uint8_t> payload;  ///< without the length; empty for markers that stand alone

    bool standsAlone() const { return code == marker::tem || (code >= marker::rst0 && code <= marker::eoi); }
    /// Bytes from the marker to the payload's end.
    std::size_t length() const { return standsAlone() ? 2 : 4 + payload.size(); }
};

/// Whether the bytes begin like a JPEG stream, JPEG-LS included.
bool isJpeg(std::span<const std::uint8_t> bytes);

/// Walks from marker to marker. Never reads outside the stream.
class JpegMarkerReader {
  public:
    explicit JpegMarkerReader(std::span<const std::uint8_t> stream) : stream_(stream) {}

    /// The next marker with its payload, skipping whatever stands before it; empty at the end of the stream.
    std::optional<JpegMarker> next();
    /// The code of the last marker, even of one whose payload is cut off; 0 before the first.
    std::uint8_t lastCode() const { return lastCode_; }
    /// Position after the last marker's payload.
    std::size_t position() const { return position_; }
    void moveTo(std::size_t position) { position_ = position; }

  private:
    std::span<const std::uint8_t> stream_;
    std::size_t position_ = 0;
    std::uint8_t lastCode_ = 0;
};

/// The marker that starts the frame and so names the process; empty when none comes before the first scan,
/// or before the end of the bytes, which may be just the first ones of a stream.
std::optional<std::uint8_t> startOfFrameIn(std::span<const std::uint8_t> stream);

/// A component as the frame header describes it.
struct JpegComponent {
    std::uint8_t id = 0;
    int horizontal = 1, vertical = 1;  ///< sampling factors
};

/// What stands before the first scan of a JPEG stream.
struct JpegHeader {
    std::uint8_t startOfFrame = 0;  ///< the marker, which names the process
    int precision = 0;
    int rows = 0;  ///< 0 when a later marker tells
    int columns = 0;
    int componentCount = 0;
    std::array<JpegComponent, 4> components{};
    bool hasJfif = false;
    std::optional<int> adobeTransform;  ///< 0 none, 1 YCbCr, 2 YCCK

    bool isSubsampled() const;
};

/// Reads a frame header's payload.
Result<JpegHeader> readFrameHeader(const JpegMarker& startOfFrame);
/// Reads up to the first scan.
Result<JpegHeader> readJpegHeader(std::span<const std::uint8_t> stream);

/// Whether an end marker follows the picture.
bool hasEnd(std::span<const std::uint8_t> stream);

}  // namespace cinedisc::dicom::codecs
