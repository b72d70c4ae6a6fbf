#include "dicom/codecs/JpegMarkers.h"

#include "dicom/codecs/CodecError.h"

#include <algorithm>
#include <cstring>

namespace cinedisc::dicom::codecs {
namespace {

bool startsWith(std::span<const std::uint8_t> payload, const char* text, std::size_t length) {
    return payload.size() >= length && std::memcmp(payload.data(), text, length) == 0;
}

}  // namespace

bool isJpeg(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == marker::soi;
}

bool isStartOfFrame(std::uint8_t code) {
    if (code == marker::sof55) return true;
    return code >= marker::sof0 && code <= marker::sof15 && code != marker::dht && code != 0xC8 &&
           code != marker::dac;
}

std::optional<JpegMarker> JpegMarkerReader::next() {
    while (true) {
        const auto from = stream_.begin() + static_cast<std::ptrdiff_t>(std::min(position_, stream_.size()));
        const auto found = std::find(from, stream_.end(), 0xFF);
        position_ = static_cast<std::size_t>(found - stream_.begin());
        while (position_ < stream_.size() && stream_[position_] == 0xFF) ++position_;
        if (position_ >= stream_.size()) return std::nullopt;
        if (stream_[position_] != 0) break;
    }
    lastCode_ = stream_[position_++];
    JpegMarker result{lastCode_, {}};
    if (result.standsAlone()) return result;
    const std::size_t left = stream_.size() - position_;
    const std::size_t length =
        left < 2 ? 2 : static_cast<std::size_t>(stream_[position_] << 8 | stream_[position_ + 1]);
    if (length < 2 || length > left) {
        if (length > left) position_ = stream_.size();
        return std::nullopt;
    }
    result.payload = stream_.subspan(position_ + 2, length - 2);
    position_ += length;
    return result;
}

std::optional<std::uint8_t> startOfFrameIn(std::span<const std::uint8_t> stream) {
    JpegMarkerReader reader(stream);
    const auto isDecided = [&] {
        return isStartOfFrame(reader.lastCode()) || reader.lastCode() == marker::sos;
    };
    while (reader.next() && !isDecided()) {
    }
    return isStartOfFrame(reader.lastCode()) ? std::optional(reader.lastCode()) : std::nullopt;
}

bool JpegHeader::isSubsampled() const {
    return std::any_of(components.begin(), components.begin() + componentCount, [&](const JpegComponent& c) {
        return c.horizontal != components[0].horizontal || c.vertical != components[0].vertical;
    });
}

Result<JpegHeader> readFrameHeader(const JpegMarker& startOfFrame) {
    const auto payload = startOfFrame.payload;
    if (payload.size() < 6) return broken("the JPEG header is too short");
    JpegHeader header;
    header.startOfFrame = startOfFrame.code;
    header.precision = payload[0];
    header.rows = payload[1] << 8 | payload[2];
    header.columns = payload[3] << 8 | payload[4];
    header.componentCount = payload[5];
    if (header.componentCount < 1 || header.componentCount > 4)
        return broken("impossible number of JPEG components");
    if (payload.size() < 6 + 3 * static_cast<std::size_t>(header.componentCount))
        return broken("the JPEG header is too short");
    for (std::size_t i = 0; i < static_cast<std::size_t>(header.componentCount); ++i) {
        JpegComponent& component = header.components[i];
        component.id = payload[6 + 3 * i];
        component.horizontal = payload[7 + 3 * i] >> 4;
        component.vertical = payload[7 + 3 * i] & 15;
        if (component.horizontal < 1 || component.horizontal > 4 || component.vertical < 1 ||
            component.vertical > 4)
            return broken("impossible JPEG sampling factors");
    }
    return header;
}

Result<JpegHeader> readJpegHeader(std::span<const std::uint8_t> stream) {
    JpegMarkerReader reader(stream);
    bool hasJfif = false;
    std::optional<int> adobeTransform;
    std::optional<JpegHeader> header;
    while (const auto next = reader.next()) {
        if (next->code == marker::app0 && startsWith(next->payload, "JFIF", 5)) hasJfif = true;
        if (next->code == marker::app14 && startsWith(next->payload, "Adobe", 5) &&
            next->payload.size() >= 12)
            adobeTransform = next->payload[11];
        if (isStartOfFrame(next->code)) {
            Result<JpegHeader> read = readFrameHeader(*next);
            if (!read) return read;
            if (header) return broken("the JPEG stream holds two frames");
            header = read.value();
        }
        if (next->code == marker::eoi) break;
        if (next->code == marker::sos) {
            if (!header) break;
            header->hasJfif = hasJfif;
            header->adobeTransform = adobeTransform;
            return *header;
        }
    }
    if (reader.position() >= stream.size()) return cutOff();
    return broken("the JPEG stream holds no picture");
}

bool hasEnd(std::span<const std::uint8_t> stream) {
    JpegMarkerReader reader(stream);
    while (const auto next = reader.next())
        if (next->code == marker::eoi) return true;
    return false;
}

}  // namespace cinedisc::dicom::codecs
