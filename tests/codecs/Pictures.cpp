#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Encoders.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace cinedisc::test {

Raster raster(int rows, int columns, int components, int bits, Texture texture, unsigned seed) {
    std::mt19937 engine(seed);
    Raster result{rows, columns, components, bits, {}};
    const auto top = static_cast<std::int64_t>((std::uint64_t{1} << bits) - 1);
    std::int64_t value = top / 2;
    while (result.samples.size() < result.size()) {
        const std::int64_t random = engine();
        if (texture == Texture::Noise) value = random & top;
        if (texture == Texture::Smooth) value = std::clamp<std::int64_t>(value + random % 15 - 7, 0, top);
        result.samples.push_back(static_cast<std::int32_t>(value));
    }
    return result;
}

dicom::PixelFormat formatOf(const Raster& raster) {
    dicom::PixelFormat format;
    format.rows = raster.rows;
    format.columns = raster.columns;
    format.samplesPerPixel = raster.components;
    if (raster.components == 3) format.photometric = dicom::Photometric::Rgb;
    format.bitsAllocated = raster.bits > 16 ? 32 : raster.bits > 8 ? 16 : 8;
    format.bitsStored = raster.bits;
    format.highBit = raster.bits - 1;
    format.isSigned = raster.isSigned;
    return format;
}

dicom::PixelFormat greyFormat(int rows, int columns, int bits) {
    return formatOf({rows, columns, 1, bits, {}});
}

dicom::PixelFormat colourFormat(int rows, int columns, dicom::Photometric photometric) {
    dicom::PixelFormat format = formatOf({rows, columns, 3, 8, {}});
    format.photometric = photometric;
    return format;
}

dicom::Result<dicom::Frame> decoded(const std::vector<std::uint8_t>& bytes, const dicom::PixelFormat& format,
                                    dicom::Compression compression) {
    return dicom::decodeFrame(std::as_bytes(std::span(bytes)), format, compression);
}

std::vector<std::int64_t> samplesOf(const dicom::Result<dicom::Frame>& frame) {
    if (!frame) throw std::runtime_error(frame.error().detail);
    return std::visit([](const auto& v) { return std::vector<std::int64_t>(v.begin(), v.end()); },
                      frame.value().samples);
}

std::vector<std::int64_t> shown(const Raster& raster) {
    std::vector<std::int64_t> result(raster.samples.begin(), raster.samples.end());
    for (auto& sample : result) {
        if (!raster.isSigned) sample &= 0xFFFF'FFFF;
        if (raster.components == 1) continue;
        sample = raster.bits < 8 ? sample * 255 / ((1 << raster.bits) - 1) : sample >> (raster.bits - 8);
    }
    return result;
}

}  // namespace cinedisc::test
