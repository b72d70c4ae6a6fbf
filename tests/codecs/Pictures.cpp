#include "tests/codecs/Pictures.h"

#include "dicom/codecs/FrameDecoder.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace cinedisc::test {

std::vector<std::uint16_t> picture(std::size_t count, int bits, Texture texture, unsigned seed) {
    std::mt19937 engine(seed);
    const int top = (1 << bits) - 1;
    std::vector<std::uint16_t> result;
    int value = top / 2;
    for (std::size_t i = 0; i < count; ++i) {
        const int random = static_cast<int>(engine() >> 8);
        if (texture == Texture::Noise) value = random & top;
        if (texture == Texture::Smooth) value = std::clamp(value + random % 15 - 7, 0, top);
        result.push_back(static_cast<std::uint16_t>(value));
    }
    return result;
}

dicom::PixelFormat greyFormat(int rows, int columns, int bits) {
    dicom::PixelFormat format;
    format.rows = rows;
    format.columns = columns;
    format.bitsAllocated = bits > 8 ? 16 : 8;
    format.bitsStored = bits;
    format.highBit = bits - 1;
    return format;
}

dicom::PixelFormat colourFormat(int rows, int columns, dicom::Photometric photometric) {
    dicom::PixelFormat format = greyFormat(rows, columns, 8);
    format.samplesPerPixel = 3;
    format.photometric = photometric;
    return format;
}

dicom::Result<dicom::Frame> decoded(const std::vector<std::uint8_t>& bytes, const dicom::PixelFormat& format,
                                    dicom::Compression compression) {
    return dicom::decodeFrame(std::as_bytes(std::span(bytes)), format, compression);
}

std::vector<std::int64_t> samplesOf(const dicom::Result<dicom::Frame>& frame) {
    if (!frame) throw std::runtime_error(frame.error().message);
    return std::visit([](const auto& v) { return std::vector<std::int64_t>(v.begin(), v.end()); },
                      frame.value().samples);
}

}  // namespace cinedisc::test
