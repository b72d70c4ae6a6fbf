#include "tests/fidelity/PlainCover.h"
#include "tests/fidelity/PlainGrey.h"
#include "tests/fidelity/ReferencePictures.h"
#include "tests/fidelity/StoredSamples.h"

#include <algorithm>
#include <cmath>

namespace cinedisc::fidelity {

namespace {

std::uint8_t displayed(double level) {
    return static_cast<std::uint8_t>(std::floor(std::clamp(level, 0.0, 255.0) + 0.5));
}

void paintGrey(ReferenceFile& file, int frame, const StoredSamples& samples, Pixels& into) {
    const PlainGrey grey(file, frame, samples);
    for (std::size_t i = 0; i < samples.values.size(); ++i)
        std::fill_n(&into.rgb[i * 3], 3, displayed(grey(samples.values[i])));
}

/// PS3.3 C.7.6.3.1.2.
void paintColour(const std::string& photometric, const StoredSamples& samples, Pixels& into) {
    const double scale = 255 / (std::ldexp(1.0, samples.bits) - 1);
    for (std::size_t i = 0; i + 2 < samples.values.size(); i += 3) {
        const double a = samples.values[i] * scale, b = samples.values[i + 1] * scale,
                     c = samples.values[i + 2] * scale;
        const bool isRgb = !photometric.starts_with("YBR_FULL");
        into.rgb[i] = displayed(isRgb ? a : a + 1.402 * (c - 128));
        into.rgb[i + 1] = displayed(isRgb ? b : a - 0.344136 * (b - 128) - 0.714136 * (c - 128));
        into.rgb[i + 2] = displayed(isRgb ? c : a + 1.772 * (b - 128));
    }
}

/// PS3.3 C.7.6.3.1.5 and C.7.6.3.1.6.
void paintPalette(const HeaderReader& header, const StoredSamples& samples, Pixels& into) {
    const DcmTagKey descriptors[] = {DCM_RedPaletteColorLookupTableDescriptor,
                                     DCM_GreenPaletteColorLookupTableDescriptor,
                                     DCM_BluePaletteColorLookupTableDescriptor};
    const DcmTagKey tables[] = {DCM_RedPaletteColorLookupTableData, DCM_GreenPaletteColorLookupTableData,
                                DCM_BluePaletteColorLookupTableData};
    for (std::size_t c = 0; c < 3; ++c) {
        const auto descriptor = header.words(descriptors[c]);
        const auto entries = header.words(tables[c]);
        if (descriptor.size() < 3 || entries.empty()) return;
        const double last = static_cast<double>(entries.size()) - 1;
        for (std::size_t i = 0; i < samples.values.size(); ++i) {
            const double index = std::clamp(samples.values[i] - descriptor[1], 0.0, last);
            const unsigned entry = entries[static_cast<std::size_t>(index)];
            into.rgb[i * 3 + c] = static_cast<std::uint8_t>(descriptor[2] > 8 ? entry >> 8 : entry);
        }
    }
}

}  // namespace

Pixels plainPicture(ReferenceFile& file, int frame) {
    const auto native = file.nativeFrame(frame);
    if (!native) return {};
    const StoredSamples samples = storedSamples(*native);
    if (samples.values.empty()) return {};
    Pixels picture{samples.rows, samples.columns, {}};
    picture.rgb.resize(samples.values.size() / static_cast<std::size_t>(samples.perPixel) * 3);
    const HeaderReader header(*native);
    const std::string photometric = header.text(DCM_PhotometricInterpretation);
    if (samples.perPixel == 3) {
        paintColour(photometric, samples, picture);
    } else if (photometric == "PALETTE COLOR") {
        paintPalette(header, samples, picture);
    } else {
        paintGrey(file, frame, samples, picture);
    }
    coverPlainly(header, frame, picture);
    return picture;
}

}  // namespace cinedisc::fidelity
