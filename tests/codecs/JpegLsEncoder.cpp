#include "tests/codecs/Encoders.h"

#include <charls/charls.h>

namespace cinedisc::test {

std::vector<std::uint8_t> jpegLsEncoded(std::span<const std::uint16_t> samples, int rows, int columns,
                                        int components, int bits, LsInterleave interleave, int nearLossless) {
    std::vector<std::uint16_t> ordered(samples.begin(), samples.end());
    if (interleave == LsInterleave::None && components > 1) {
        const std::size_t pixels = samples.size() / static_cast<std::size_t>(components);
        for (std::size_t i = 0; i < samples.size(); ++i)
            ordered[i % static_cast<std::size_t>(components) * pixels +
                    i / static_cast<std::size_t>(components)] = samples[i];
    }
    charls::jpegls_encoder encoder;
    encoder
        .frame_info({static_cast<std::uint32_t>(columns), static_cast<std::uint32_t>(rows), bits, components})
        .interleave_mode(static_cast<charls::interleave_mode>(interleave))
        .near_lossless(nearLossless);
    std::vector<std::uint8_t> stream(encoder.estimated_destination_size() + 1024);
    encoder.destination(stream);
    std::size_t length = 0;
    if (bits <= 8) {
        const std::vector<std::uint8_t> bytes(ordered.begin(), ordered.end());
        length = encoder.encode(bytes);
    } else {
        length = encoder.encode(ordered);
    }
    stream.resize(length);
    return stream;
}

}  // namespace cinedisc::test
