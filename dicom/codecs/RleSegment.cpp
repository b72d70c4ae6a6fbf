#include "dicom/codecs/RleSegment.h"

#include <algorithm>
#include <cstring>

namespace cinedisc::dicom::codecs {

namespace {

constexpr std::size_t block = 16;
/// The longest run, with as much behind it as copying whole blocks may touch.
constexpr std::size_t room = 128 + block;

}  // namespace

/// Expands whole runs as long as neither end is near, in blocks of fixed size: most runs are too short for
/// anything cleverer to pay.
void RleSegment::expandWithRoom(std::span<std::uint8_t>& out) {
    const std::uint8_t* in = bytes_.data();
    const std::uint8_t* const inEnd = in + bytes_.size();
    std::uint8_t* to = out.data();
    std::uint8_t* const toEnd = to + out.size();
    while (static_cast<std::size_t>(inEnd - in) > room && static_cast<std::size_t>(toEnd - to) >= room) {
        const unsigned control = *in++;
        if (control < 128) {
            const std::size_t count = control + 1;
            for (std::size_t i = 0; i < count; i += block) std::memcpy(to + i, in + i, block);
            in += count;
            to += count;
        } else if (control > 128) {
            const std::size_t count = 257 - control;
            for (std::size_t i = 0; i < count; i += block) std::memset(to + i, *in, block);
            ++in;
            to += count;
        }
    }
    bytes_ = bytes_.last(static_cast<std::size_t>(inEnd - in));
    out = out.last(static_cast<std::size_t>(toEnd - to));
}

bool RleSegment::expand(std::span<std::uint8_t> out) {
    if (left_ == 0) expandWithRoom(out);
    const std::uint8_t* in = bytes_.data();
    const std::uint8_t* const inEnd = in + bytes_.size();
    std::uint8_t* to = out.data();
    std::uint8_t* const toEnd = to + out.size();
    while (to < toEnd) {
        if (left_ == 0) {
            if (inEnd - in < 2) return false;
            const unsigned control = *in++;
            if (control == 128) continue;
            literal_ = control < 128;
            left_ = literal_ ? control + 1 : 257 - control;
        }
        const std::size_t count = std::min(left_, static_cast<std::size_t>(toEnd - to));
        if (literal_) {
            if (static_cast<std::size_t>(inEnd - in) < count) return false;
            std::memcpy(to, in, count);
            in += count;
        } else {
            if (in == inEnd) return false;
            std::memset(to, *in, count);
        }
        to += count;
        left_ -= count;
        if (left_ == 0 && !literal_) ++in;
    }
    bytes_ = bytes_.last(static_cast<std::size_t>(inEnd - in));
    return true;
}

}  // namespace cinedisc::dicom::codecs
