#include "tests/fidelity/StoredSamples.h"

#include <cmath>

namespace cinedisc::fidelity {

namespace {

double takeValue(const Uint8* bytes, std::size_t index, int allocated, int stored, int highBit,
                 bool isSigned) {
    if (allocated == 1) return bytes[index / 8] >> (index % 8) & 1;
    Uint32 cell = 0;
    const auto cellBytes = static_cast<std::size_t>(allocated / 8);
    for (std::size_t i = cellBytes; i-- > 0;) cell = cell << 8 | bytes[index * cellBytes + i];
    const double range = std::ldexp(1.0, stored);
    const double value = std::fmod(std::floor(cell / std::ldexp(1.0, highBit + 1 - stored)), range);
    return isSigned && value >= range / 2 ? value - range : value;
}

/// PS3.3 C.7.6.3.1.2: two luminances, then the chrominances that they share.
void takeSharedChrominance(const Uint8* bytes, StoredSamples& into) {
    for (std::size_t i = 0; i < into.values.size() / 3; ++i) {
        const std::size_t pair = i / 2 * 4;
        into.values[i * 3] = bytes[pair + i % 2];
        into.values[i * 3 + 1] = bytes[pair + 2];
        into.values[i * 3 + 2] = bytes[pair + 3];
    }
}

}  // namespace

StoredSamples storedSamples(DcmItem& native) {
    const HeaderReader header(native);
    StoredSamples samples;
    samples.rows = header.integer(DCM_Rows, 0);
    samples.columns = header.integer(DCM_Columns, 0);
    samples.perPixel = header.integer(DCM_SamplesPerPixel, 1);
    samples.isSigned = header.integer(DCM_PixelRepresentation, 0) == 1;
    const auto pixels = static_cast<std::size_t>(samples.rows) * static_cast<std::size_t>(samples.columns);
    const auto perPixel = static_cast<std::size_t>(samples.perPixel);
    const std::size_t count = pixels * perPixel;

    const Float32* reals = nullptr;
    unsigned long there = 0;
    if (native.findAndGetFloat32Array(DCM_FloatPixelData, reals, &there).good() && there >= count) {
        samples.isFloat = true;
        samples.values.assign(reals, reals + count);
        return samples;
    }
    const int allocated = header.integer(DCM_BitsAllocated, 8);
    const int highBit = header.integer(DCM_HighBit, allocated - 1);
    samples.bits = header.integer(DCM_BitsStored, allocated);

    DcmElement* element = nullptr;
    native.findAndGetElement(DCM_PixelData, element);
    Uint16* words = nullptr;
    Uint8* bytes = nullptr;
    if (!element) return samples;
    if (element->getUint16Array(words).good() && words) {
        bytes = reinterpret_cast<Uint8*>(words);
    } else if (element->getUint8Array(bytes).bad() || !bytes) {
        return samples;
    }
    const std::size_t length = element->getLength();
    samples.values.resize(count);
    if (header.text(DCM_PhotometricInterpretation) == "YBR_FULL_422" && length < count) {
        takeSharedChrominance(bytes, samples);
        return samples;
    }
    if (length * 8 < count * static_cast<std::size_t>(allocated)) {
        samples.values.clear();
        return samples;
    }
    const bool planar = samples.perPixel == 3 && header.integer(DCM_PlanarConfiguration, 0) == 1;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t cell = planar ? i % 3 * pixels + i / 3 : i;
        samples.values[i] = takeValue(bytes, cell, allocated, samples.bits, highBit, samples.isSigned);
    }
    return samples;
}

}  // namespace cinedisc::fidelity
