#pragma once

#include "dicom/codecs/CodedPicture.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace cinedisc::dicom::codecs {

/// Turns interleaved triples into red, green and blue in place (PS3.3 C.7.6.3.1.2).
void convertToRgb(std::span<std::uint8_t> triples, ColourSpace from);

/// Turns three planes, one after the other, into triples.
void interleave(std::span<const std::uint8_t> planes, std::span<std::uint8_t> triples);

/// Luminance of a red, green and blue triple.
std::uint8_t luminance(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

}  // namespace cinedisc::dicom::codecs
