#include "dicom/codecs/Colour.h"

#include <algorithm>
#include <array>

namespace cinedisc::dicom::codecs {
namespace {

constexpr int fractionBits = 16;
constexpr int half = 1 << (fractionBits - 1);

constexpr int fixed(double factor) {
    return static_cast<int>(factor * (1 << fractionBits) + (factor < 0 ? -0.5 : 0.5));
}

/// The inverse of a luminance and chrominance encoding, in fixed point.
struct Inverse {
    int blackLevel;
    int luma, redFromRed, greenFromBlue, greenFromRed, blueFromBlue;
};

constexpr Inverse fullRange{0, fixed(1), fixed(1.402), fixed(-0.344136), fixed(-0.714136), fixed(1.772)};
constexpr Inverse partialRange{
    16, fixed(1.164384), fixed(1.596027), fixed(-0.391762), fixed(-0.812968), fixed(2.017232)};

std::uint8_t clamped(int value) {
    return static_cast<std::uint8_t>(std::clamp(value >> fractionBits, 0, 255));
}

void convert(std::span<std::uint8_t> triples, const Inverse& by) {
    for (std::size_t i = 0; i + 2 < triples.size(); i += 3) {
        const int luma = (triples[i] - by.blackLevel) * by.luma + half;
        const int blue = triples[i + 1] - 128;
        const int red = triples[i + 2] - 128;
        triples[i] = clamped(luma + red * by.redFromRed);
        triples[i + 1] = clamped(luma + blue * by.greenFromBlue + red * by.greenFromRed);
        triples[i + 2] = clamped(luma + blue * by.blueFromBlue);
    }
}

}  // namespace

void convertToRgb(std::span<std::uint8_t> triples, ColourSpace from) {
    if (from == ColourSpace::YbrFull) convert(triples, fullRange);
    if (from == ColourSpace::YbrPartial) convert(triples, partialRange);
}

void interleave(std::span<const std::uint8_t> planes, std::span<std::uint8_t> triples) {
    const std::size_t count = std::min(planes.size(), triples.size()) / 3;
    const std::uint8_t* first = planes.data();
    const std::uint8_t* second = first + count;
    const std::uint8_t* third = second + count;
    std::uint8_t* out = triples.data();
    for (std::size_t i = 0; i < count; ++i, out += 3) {
        out[0] = first[i];
        out[1] = second[i];
        out[2] = third[i];
    }
}

std::uint8_t luminance(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return clamped(red * fixed(0.299) + green * fixed(0.587) + blue * fixed(0.114) + half);
}

}  // namespace cinedisc::dicom::codecs
