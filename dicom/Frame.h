#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

namespace cinedisc::dicom {

/// One decoded frame. Rows follow each other without padding.
///
/// Grey and palette frames hold the stored values, one a pixel: masked to BitsStored, shifted down by
/// HighBit, and sign-extended when the pixel representation is signed (PS3.5 section 8.1.1). Colour frames
/// hold red, green and blue interleaved, 8 bit each, already converted from whatever colour space the file
/// uses.
struct Frame {
    int rows = 0;
    int columns = 0;
    int samplesPerPixel = 1;  ///< 1 grey or palette index, 3 colour (then the samples are 8 bit unsigned)

    using Samples =
        std::variant<std::vector<std::uint8_t>, std::vector<std::int8_t>, std::vector<std::uint16_t>,
                     std::vector<std::int16_t>, std::vector<std::uint32_t>, std::vector<std::int32_t>,
                     std::vector<float>, std::vector<double>>;
    Samples samples;

    std::size_t pixelCount() const {
        return static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
    }
    /// Bytes that the samples take in memory.
    std::size_t byteSize() const {
        return std::visit([](const auto& v) { return v.size() * sizeof(v[0]); }, samples);
    }
};

}  // namespace cinedisc::dicom
