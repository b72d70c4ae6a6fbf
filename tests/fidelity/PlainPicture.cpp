#include "tests/fidelity/ReferenceFile.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace cinedisc::fidelity {

namespace {

/// The stored values of a native frame in little endian, masked, shifted and signed as PS3.5 section 8.1.1
/// says, samples of a pixel side by side; none when the data do not suffice.
struct StoredSamples {
    explicit StoredSamples(DcmItem& native)
        : header(native),
          rows(header.integer(DCM_Rows, 0)),
          columns(header.integer(DCM_Columns, 0)),
          perPixel(header.integer(DCM_SamplesPerPixel, 1)),
          allocated(header.integer(DCM_BitsAllocated, 8)),
          bits(header.integer(DCM_BitsStored, allocated)),
          shift(header.integer(DCM_HighBit, allocated - 1) + 1 - bits),
          isSigned(header.integer(DCM_PixelRepresentation, 0) == 1) {
        const auto pixels = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
        const std::size_t count = pixels * static_cast<std::size_t>(perPixel);
        const Float32* reals = nullptr;
        unsigned long there = 0;
        isFloat = native.findAndGetFloat32Array(DCM_FloatPixelData, reals, &there).good() && there >= count;
        if (isFloat) values.assign(reals, reals + count);
        DcmElement* element = nullptr;
        native.findAndGetElement(DCM_PixelData, element);
        const Uint8* bytes = element ? pixelBytes(*element) : nullptr;
        if (isFloat || !bytes) return;
        const std::size_t length = element->getLength();
        const bool sharesColours =
            header.text(DCM_PhotometricInterpretation) == "YBR_FULL_422" && length < count;
        if (!sharesColours && length * 8 < count * static_cast<std::size_t>(allocated)) return;
        const bool isPlanar = perPixel == 3 && header.integer(DCM_PlanarConfiguration, 0) == 1;
        for (std::size_t i = 0; i < count; ++i) {
            // PS3.3 C.7.6.3.1.2: two luminances, then the chrominances that they share.
            const std::size_t pair = i / 6 * 4, shared = i % 3 ? pair + 1 + i % 3 : pair + i / 3 % 2;
            values.push_back(valueAt(bytes, sharesColours ? shared : isPlanar ? i % 3 * pixels + i / 3 : i));
        }
    }

    HeaderReader header;
    int rows, columns, perPixel, allocated, bits, shift;
    bool isSigned, isFloat = false;
    std::vector<double> values;

  private:
    double valueAt(const Uint8* bytes, std::size_t index) const {
        if (allocated == 1) return bytes[index / 8] >> (index % 8) & 1;
        Uint32 cell = 0;
        const auto cellBytes = static_cast<std::size_t>(allocated / 8);
        for (std::size_t i = cellBytes; i-- > 0;) cell = cell << 8 | bytes[index * cellBytes + i];
        const double range = std::ldexp(1.0, bits);
        const double value = std::fmod(std::floor(cell / std::ldexp(1.0, shift)), range);
        return isSigned && value >= range / 2 ? value - range : value;
    }
};

/// A look-up table, whose descriptor says how many entries, what the first one stands for and their bits.
struct Table {
    static std::optional<Table> of(const std::optional<HeaderReader>& header, bool isSigned,
                                   const DcmTagKey& descriptor = DCM_LUTDescriptor,
                                   const DcmTagKey& data = DCM_LUTData) {
        if (!header || header->words(descriptor).size() < 3 || header->words(data).empty())
            return std::nullopt;
        const auto words = header->words(descriptor);
        return Table{isSigned ? static_cast<Sint16>(words[1]) : static_cast<double>(words[1]), words[2],
                     header->words(data)};
    }
    unsigned at(double value) const {
        const double last = static_cast<double>(entries.size()) - 1;
        return entries[static_cast<std::size_t>(std::clamp(std::floor(value + 0.5) - first, 0.0, last))];
    }

    double first;
    int bits;
    std::vector<Uint16> entries;
};

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
            modalityTable_ = Table::of(header.item(DCM_ModalityLUTSequence), samples.isSigned);
        }
        voiTable_ = Table::of(header.item(DCM_VOILUTSequence), samples.isSigned);

        const HeaderReader voi = header.macro(DCM_FrameVOILUTSequence, frame);
        center_ = voi.number(DCM_WindowCenter, 0);
        width_ = voi.number(DCM_WindowWidth, 0);
        function_ = voi.text(DCM_VOILUTFunction);
        const std::string photometric = header.text(DCM_PhotometricInterpretation);
        inverse_ = photometric == "MONOCHROME1" || header.text(DCM_PresentationLUTShape) == "INVERSE";
        if (header.has(DCM_PixelPaddingValue)) {
            const double value = header.number(DCM_PixelPaddingValue, 0);
            const double limit = header.number(DCM_PixelPaddingRangeLimit, value);
            padding_ = {std::min(value, limit), std::max(value, limit)};
        }
        if (width_ == 0) windowWithoutHeader(file, samples);
    }

    double operator()(double stored) const {
        if (isPadding(stored)) return 0;
        const double level = std::clamp(windowed(modality(stored)), 0.0, 255.0);
        return inverse_ ? 255 - level : level;
    }

  private:
    bool isPadding(double stored) const {
        return padding_ && stored >= padding_->first && stored <= padding_->second;
    }
    double modality(double stored) const {
        return modalityTable_ ? modalityTable_->at(stored) : stored * slope_ + intercept_;
    }
    double windowed(double value) const {
        if (voiTable_) return voiTable_->at(value) / (std::ldexp(1.0, voiTable_->bits) - 1) * 255;
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
            for (const double value : StoredSamples(*first).values) {
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

int displayed(double level) { return static_cast<int>(std::floor(std::clamp(level, 0.0, 255.0) + 0.5)); }

using ColourOf = std::function<QRgb(std::size_t pixel)>;

ColourOf greys(ReferenceFile& file, int frame, const StoredSamples& samples) {
    return [&samples, grey = PlainGrey(file, frame, samples)](std::size_t pixel) {
        const int level = displayed(grey(samples.values[pixel]));
        return qRgb(level, level, level);
    };
}

/// PS3.3 C.7.6.3.1.2.
ColourOf colours(const StoredSamples& samples) {
    const bool isYbr = samples.header.text(DCM_PhotometricInterpretation).starts_with("YBR_FULL");
    return [&samples, isYbr, scale = 255 / (std::ldexp(1.0, samples.bits) - 1)](std::size_t pixel) {
        const double* const stored = &samples.values[pixel * 3];
        const double a = stored[0] * scale, b = stored[1] * scale, c = stored[2] * scale;
        if (!isYbr) return qRgb(displayed(a), displayed(b), displayed(c));
        return qRgb(displayed(a + 1.402 * (c - 128)),
                    displayed(a - 0.344136 * (b - 128) - 0.714136 * (c - 128)),
                    displayed(a + 1.772 * (b - 128)));
    };
}

/// PS3.3 C.7.6.3.1.5 and C.7.6.3.1.6.
ColourOf paletteColours(const StoredSamples& samples) {
    const auto table = [&](Uint16 c) {
        return Table::of(samples.header, false, {0x0028, static_cast<Uint16>(0x1101 + c)},
                         {0x0028, static_cast<Uint16>(0x1201 + c)})
            .value();
    };
    return [&samples, red = table(0), green = table(1), blue = table(2)](std::size_t pixel) {
        const auto part = [value = samples.values[pixel]](const Table& of) {
            return static_cast<int>(of.at(value) >> (of.bits > 8 ? 8 : 0));
        };
        return qRgb(part(red), part(green), part(blue));
    };
}

void paint(QImage& picture, int row, int column, int grey) {
    if (picture.valid(column - 1, row - 1)) picture.setPixel(column - 1, row - 1, qRgb(grey, grey, grey));
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
    return header.text(DCM_ShutterShape).find(shape) != std::string::npos;
}

int shutterGrey(const HeaderReader& header) { return header.integer(DCM_ShutterPresentationValue, 0) >> 8; }

/// PS3.3 C.7.6.11, all shapes but the bitmap.
void closeShutter(const HeaderReader& header, QImage& picture) {
    const auto edge = [&](const DcmTagKey& tag) { return header.integer(tag, 0); };
    const auto center = header.numbers(DCM_CenterOfCircularShutter);
    const auto vertices = header.numbers(DCM_VerticesOfThePolygonalShutter);
    for (int row = 1; row <= picture.height(); ++row) {
        for (int column = 1; column <= picture.width(); ++column) {
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

/// Draws an overlay plane (PS3.3 C.9.2): the bits of its own data or, without any, one bit of each pixel
/// cell.
void layOverlay(const HeaderReader& header, Uint16 group, int frame, int grey, QImage& picture) {
    const auto number = [&](Uint16 element, int otherwise) {
        return header.integer({group, element}, otherwise);
    };
    const int rows = number(0x0010, 0), columns = number(0x0011, 0), plane = number(0x0102, 0);
    const bool isEmbedded = !header.has({group, 0x3000});
    const bool isMultiFrame = header.has({group, 0x0015}) && !isEmbedded;
    const int own = isMultiFrame ? frame + 1 - number(0x0051, 1) : 0;
    if (own < 0 || own >= number(0x0015, 1)) return;
    auto origin = header.numbers({group, 0x0050});
    if (origin.size() != 2) origin = {1, 1};
    const auto words = header.words(isEmbedded ? DCM_PixelData : DcmTagKey(group, 0x3000));
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            const auto pixel = static_cast<std::size_t>((own * rows + row) * columns + column);
            const std::size_t word = isEmbedded ? pixel : pixel / 16;
            const int bit = isEmbedded ? plane : static_cast<int>(pixel % 16);
            if (word < words.size() && (words[word] >> bit & 1))
                paint(picture, static_cast<int>(origin[0]) + row, static_cast<int>(origin[1]) + column, grey);
        }
}

/// Lays the display shutter, then the overlay planes of a frame (counted from 0) over a picture, pixel by
/// pixel.
void coverPlainly(const HeaderReader& header, int frame, QImage& picture) {
    if (header.has(DCM_ShutterShape)) closeShutter(header, picture);
    const int covering = hasShape(header, "BITMAP") ? header.integer(DCM_ShutterOverlayGroup, 0) : 0;
    if (covering) layOverlay(header, static_cast<Uint16>(covering), frame, shutterGrey(header), picture);
    for (Uint16 group = 0x6000; group <= 0x601E; group = static_cast<Uint16>(group + 2)) {
        if (header.has({group, 0x0010}) && group != covering) layOverlay(header, group, frame, 255, picture);
    }
}

}  // namespace

QImage plainPicture(ReferenceFile& file, int frame) {
    const auto native = file.nativeFrame(frame);
    if (!native) return {};
    const StoredSamples samples(*native);
    if (samples.values.empty()) return {};
    const bool isPalette = samples.header.text(DCM_PhotometricInterpretation) == "PALETTE COLOR";
    const ColourOf colour = samples.perPixel == 3 ? colours(samples)
                            : isPalette           ? paletteColours(samples)
                                                  : greys(file, frame, samples);
    QImage picture(samples.columns, samples.rows, QImage::Format_RGB32);
    for (int i = 0; i < samples.rows * samples.columns; ++i)
        picture.setPixel(i % samples.columns, i / samples.columns, colour(static_cast<std::size_t>(i)));
    coverPlainly(samples.header, frame, picture);
    return picture;
}

}  // namespace cinedisc::fidelity
