#include "tests/fidelity/ReferencePictures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace cinedisc::fidelity {

namespace {

/// The stored values of a native frame: masked, shifted and signed as PS3.5 section 8.1.1 says, samples of a
/// pixel side by side.
struct StoredSamples {
    int rows = 0;
    int columns = 0;
    int perPixel = 1;
    int bits = 8;
    bool isSigned = false;
    bool isFloat = false;
    std::vector<double> values;
};

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

/// Takes them one by one out of a data set with native little endian pixels; no values when they do not
/// suffice.
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
    const Uint8* bytes = element ? pixelBytes(*element) : nullptr;
    if (!bytes) return samples;
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

/// From one stored value to the displayed level, 0 to 255, by the formulas of PS3.3 C.11.
class PlainGrey {
  public:
    PlainGrey(ReferenceFile& file, int frame, const StoredSamples& samples) {
        const HeaderReader header = file.header();
        const std::string modality = header.text(DCM_Modality);
        if (modality != "XA" && modality != "RF") {
            const HeaderReader step = header.macro(DCM_PixelValueTransformationSequence, frame);
            slope_ = step.number(DCM_RescaleSlope, 1);
            intercept_ = step.number(DCM_RescaleIntercept, 0);
            modalityTable_ = tableOf(header, DCM_ModalityLUTSequence, samples.isSigned);
        }
        voiTable_ = tableOf(header, DCM_VOILUTSequence, samples.isSigned);

        const HeaderReader voi = header.macro(DCM_FrameVOILUTSequence, frame);
        const auto centers = voi.numbers(DCM_WindowCenter), widths = voi.numbers(DCM_WindowWidth);
        function_ = voi.text(DCM_VOILUTFunction);
        const std::string photometric = header.text(DCM_PhotometricInterpretation);
        inverse_ = photometric == "MONOCHROME1" || header.text(DCM_PresentationLUTShape) == "INVERSE";
        if (header.has(DCM_PixelPaddingValue)) {
            const double value = header.number(DCM_PixelPaddingValue, 0);
            const double limit = header.number(DCM_PixelPaddingRangeLimit, value);
            padding_ = {std::min(value, limit), std::max(value, limit)};
        }
        if (!centers.empty() && !widths.empty()) {
            center_ = centers.front();
            width_ = widths.front();
        } else {
            windowWithoutHeader(file, samples);
        }
    }

    double operator()(double stored) const {
        if (isPadding(stored)) return 0;
        const double level = std::clamp(windowed(modality(stored)), 0.0, 255.0);
        return inverse_ ? 255 - level : level;
    }

  private:
    struct Table {
        double first = 0;
        double highest = 65535;
        std::vector<Uint16> entries;
        double at(double value) const {
            const double last = static_cast<double>(entries.size()) - 1;
            return entries[static_cast<std::size_t>(std::clamp(std::floor(value + 0.5) - first, 0.0, last))];
        }
    };

    static std::optional<Table> tableOf(const HeaderReader& header, const DcmTagKey& sequence,
                                        bool isSigned) {
        const auto items = header.items(sequence);
        if (items.empty()) return std::nullopt;
        const auto descriptor = items.front().words(DCM_LUTDescriptor);
        Table table;
        table.entries = items.front().words(DCM_LUTData);
        if (descriptor.size() < 3 || table.entries.empty()) return std::nullopt;
        table.first = isSigned ? static_cast<Sint16>(descriptor[1]) : static_cast<double>(descriptor[1]);
        table.highest = std::ldexp(1.0, static_cast<int>(descriptor[2])) - 1;
        return table;
    }
    bool isPadding(double stored) const {
        return padding_ && stored >= padding_->first && stored <= padding_->second;
    }
    double modality(double stored) const {
        return modalityTable_ ? modalityTable_->at(stored) : stored * slope_ + intercept_;
    }
    double windowed(double value) const {
        if (voiTable_) return voiTable_->at(value) / voiTable_->highest * 255;
        if (function_ == "SIGMOID") return 255 / (1 + std::exp(-4 * (value - center_) / width_));
        if (function_ == "LINEAR_EXACT") return ((value - center_) / width_ + 0.5) * 255;
        if (value <= center_ - 0.5 - (width_ - 1) / 2) return 0;
        if (value > center_ - 0.5 + (width_ - 1) / 2) return 255;
        return ((value - (center_ - 0.5)) / (width_ - 1) + 0.5) * 255;
    }
    void windowWithoutHeader(ReferenceFile& file, const StoredSamples& samples) {
        double low = std::numeric_limits<double>::max(), high = -low;
        if (samples.bits <= 8 && !samples.isFloat) {
            const double range = std::ldexp(1.0, samples.bits);
            low = samples.isSigned ? -range / 2 : 0;
            high = low + range - 1;
        } else {
            const auto first = file.nativeFrame(0);
            for (const double value : storedSamples(*first).values) {
                if (isPadding(value)) continue;
                low = std::min(low, value);
                high = std::max(high, value);
            }
        }
        const double a = modality(low), b = modality(high);
        function_ = "LINEAR_EXACT";
        center_ = (a + b) / 2;
        width_ = std::max(std::abs(b - a), 1e-9);
    }

    std::optional<Table> modalityTable_, voiTable_;
    std::optional<std::pair<double, double>> padding_;
    double slope_ = 1, intercept_ = 0;
    double center_ = 0, width_ = 0;
    std::string function_;
    bool inverse_ = false;
};

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

void paint(Pixels& picture, int row, int column, std::uint8_t grey) {
    if (row < 1 || column < 1 || row > picture.rows || column > picture.columns) return;
    const std::size_t at = (static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(picture.columns) +
                            static_cast<std::size_t>(column - 1)) *
                           3;
    std::fill_n(&picture.rgb[at], 3, grey);
}

/// Whether a point lies in a polygon or on its outline: by the angle that the vertices turn around it.
bool isInPolygon(const std::vector<double>& vertices, double row, double column) {
    double turned = 0;
    for (std::size_t i = 0; i + 1 < vertices.size(); i += 2) {
        const std::size_t next = (i + 2) % (vertices.size() / 2 * 2);
        const double y0 = vertices[i] - row, x0 = vertices[i + 1] - column;
        const double y1 = vertices[next] - row, x1 = vertices[next + 1] - column;
        const double across = x0 * y1 - x1 * y0, along = x0 * x1 + y0 * y1;
        if (across == 0 && along <= 0) return true;
        turned += std::atan2(across, along);
    }
    return std::lround(turned / (2 * std::acos(-1.0))) % 2 != 0;
}

bool hasShape(const HeaderReader& header, const char* shape) {
    const auto shapes = header.texts(DCM_ShutterShape);
    return std::find(shapes.begin(), shapes.end(), shape) != shapes.end();
}

std::uint8_t shutterGrey(const HeaderReader& header) {
    return static_cast<std::uint8_t>(header.integer(DCM_ShutterPresentationValue, 0) >> 8);
}

/// PS3.3 C.7.6.11, all shapes but the bitmap.
void closeShutter(const HeaderReader& header, Pixels& picture) {
    const auto edge = [&](const DcmTagKey& tag) { return header.integer(tag, 0); };
    const auto center = header.numbers(DCM_CenterOfCircularShutter);
    const auto vertices = header.numbers(DCM_VerticesOfThePolygonalShutter);
    for (int row = 1; row <= picture.rows; ++row) {
        for (int column = 1; column <= picture.columns; ++column) {
            bool open = true;
            if (hasShape(header, "RECTANGULAR"))
                open = column >= edge(DCM_ShutterLeftVerticalEdge) &&
                       column <= edge(DCM_ShutterRightVerticalEdge) &&
                       row >= edge(DCM_ShutterUpperHorizontalEdge) &&
                       row <= edge(DCM_ShutterLowerHorizontalEdge);
            if (hasShape(header, "CIRCULAR") && center.size() == 2) {
                const double dy = row - center[0], dx = column - center[1],
                             radius = header.number(DCM_RadiusOfCircularShutter, 0);
                open = open && dx * dx + dy * dy <= radius * radius;
            }
            if (hasShape(header, "POLYGONAL")) open = open && isInPolygon(vertices, row, column);
            if (!open) paint(picture, row, column, shutterGrey(header));
        }
    }
}

/// An overlay plane (PS3.3 C.9.2): the bits of its own data or, without any, one bit of each pixel cell.
class Plane {
  public:
    Plane(const HeaderReader& header, Uint16 group, int frame)
        : rows(header.integer({group, 0x0010}, 0)), columns(header.integer({group, 0x0011}, 0)) {
        isEmbedded_ = !header.has({group, 0x3000});
        words_ = header.words(isEmbedded_ ? DCM_PixelData : DcmTagKey(group, 0x3000));
        bit_ = header.integer({group, 0x0102}, 0);
        const bool isMultiFrame = header.has({group, 0x0015}) && !isEmbedded_;
        const int own = isMultiFrame ? frame + 1 - header.integer({group, 0x0051}, 1) : 0;
        const bool isThere = own >= 0 && own < header.integer({group, 0x0015}, 1);
        if (!isThere) rows = 0;
        first_ = static_cast<std::size_t>(std::max(own, 0)) * static_cast<std::size_t>(rows * columns);
        const auto origin = header.numbers({group, 0x0050});
        if (origin.size() == 2) {
            top = static_cast<int>(origin[0]);
            left = static_cast<int>(origin[1]);
        }
    }

    bool operator()(int row, int column) const {
        const std::size_t pixel = first_ + static_cast<std::size_t>(row * columns + column);
        const std::size_t word = isEmbedded_ ? pixel : pixel / 16;
        const std::size_t bit = isEmbedded_ ? static_cast<std::size_t>(bit_) : pixel % 16;
        return word < words_.size() && (words_[word] >> bit & 1);
    }

    int rows, columns, top = 1, left = 1;

  private:
    bool isEmbedded_ = false;
    int bit_ = 0;
    std::size_t first_ = 0;
    std::vector<Uint16> words_;
};

void layOverlay(const HeaderReader& header, Uint16 group, int frame, std::uint8_t grey, Pixels& picture) {
    const Plane plane(header, group, frame);
    for (int row = 0; row < plane.rows; ++row) {
        for (int column = 0; column < plane.columns; ++column)
            if (plane(row, column)) paint(picture, plane.top + row, plane.left + column, grey);
    }
}

/// Lays the display shutter, then the overlay planes of a frame (counted from 0) over a picture, pixel by
/// pixel.
void coverPlainly(const HeaderReader& header, int frame, Pixels& picture) {
    if (header.has(DCM_ShutterShape)) closeShutter(header, picture);
    const int covering = hasShape(header, "BITMAP") ? header.integer(DCM_ShutterOverlayGroup, 0) : 0;
    if (covering) layOverlay(header, static_cast<Uint16>(covering), frame, shutterGrey(header), picture);
    for (Uint16 group = 0x6000; group <= 0x601E; group = static_cast<Uint16>(group + 2)) {
        if (header.has({group, 0x0010}) && group != covering) layOverlay(header, group, frame, 255, picture);
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
