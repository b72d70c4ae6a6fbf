#include "dicom/codecs/EntropyData.h"

#include "dicom/codecs/JpegMarkers.h"

#include <cstring>

namespace cinedisc::dicom::codecs {

EntropyData::EntropyData(std::span<const std::uint8_t> coded, std::size_t padding, std::size_t mostSegments)
    : bytes_(std::make_unique_for_overwrite<std::uint8_t[]>(coded.size() + padding)) {
    const std::uint8_t* in = coded.data();
    const std::uint8_t* const end = in + coded.size();
    std::uint8_t* const start = bytes_.get();
    std::uint8_t* out = start;
    std::size_t segmentBegin = 0;
    const auto closeSegment = [&](std::uint8_t code) {
        const auto here = static_cast<std::size_t>(out - start);
        if (segments_.size() < mostSegments) segments_.push_back({segmentBegin, here, code});
        segmentBegin = here;
    };

    while (true) {
        const void* const found =
            in == end ? nullptr : std::memchr(in, 0xFF, static_cast<std::size_t>(end - in));
        const auto* const stop = found ? static_cast<const std::uint8_t*>(found) : end;
        std::memcpy(out, in, static_cast<std::size_t>(stop - in));
        out += stop - in;
        in = stop;
        while (in < end && *in == 0xFF && (end - in == 1 || in[1] == 0xFF))
            ++in;  // fill bytes before a marker
        if (in == end) {
            closeSegment(0);
            break;
        }
        const std::uint8_t code = in[1];
        if (code == 0) {
            *out++ = 0xFF;
        } else {
            closeSegment(code);
            if (code < marker::rst0 || code > marker::rst7) break;
        }
        in += 2;
    }
    std::memset(out, 0, static_cast<std::size_t>(bytes_.get() + coded.size() + padding - out));
    codedLength_ = static_cast<std::size_t>(in - coded.data());
}

}  // namespace cinedisc::dicom::codecs
