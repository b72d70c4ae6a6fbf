#include "dicom/codecs/CodedPicture.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/Colour.h"
#include "dicom/codecs/PixelCell.h"

#include <algorithm>

namespace cinedisc::dicom::codecs {
namespace {

/// Which bits of a cell are the value.
struct ValueBits {
    int shift = 0;
    int count = 8;
    int signBits = 0;       ///< width whose top bit is the sign, 0 for unsigned values
    bool clean = false;     ///< nothing but the value is in the cell already
    bool clamps = false;    ///< what is beyond `count` bits becomes the end of the range
    bool ofSigned = false;  ///< the range's beginning and end are those of signed values
};

/// Whether cutting the values out would leave all cells as they are.
bool isClean(const CodedPicture& picture, const ValueBits& bits) {
    if (bits.shift > 0 || bits.clamps) return false;
    const int unsignedBits = bits.signBits > 0 ? bits.signBits - 1 : bits.count;
    if (picture.usedBits) return std::uint64_t{*picture.usedBits} >> unsignedBits == 0;
    return bits.signBits == 0 && bits.count == picture.precision;
}

ValueBits valueBits(const CodedPicture& picture, const PixelFormat& format) {
    const PixelCell cell = pixelCell(format);
    const bool areCells = picture.exactness != Exactness::Other && picture.precision == cell.allocated;
    const bool mayOvershoot = picture.exactness == Exactness::Near && picture.precision > cell.stored;
    ValueBits bits;
    if (mayOvershoot && (areCells || (picture.isSigned && !format.isSigned))) {
        bits.clamps = true;
        bits.ofSigned = format.isSigned;
        if (areCells) bits.shift = cell.shift;
        bits.count = areCells ? cell.stored : picture.precision;
        bits.signBits = format.isSigned || picture.isSigned ? picture.precision : 0;
        return bits;
    }
    if (areCells) {
        bits.shift = cell.shift;
        bits.count = bits.signBits = cell.stored;
    } else {
        bits.count = picture.precision;
        bits.signBits = picture.isSigned ? picture.precision : std::max(picture.precision, cell.stored);
    }
    if (!format.isSigned) bits.signBits = 0;
    bits.clean = isClean(picture, bits);
    return bits;
}

template <typename Unsigned>
Unsigned signExtended(Unsigned cell, int signBits) {
    const int up = static_cast<int>(sizeof(Unsigned) * 8) - signBits;
    return static_cast<Unsigned>(
        static_cast<std::make_signed_t<Unsigned>>(static_cast<Unsigned>(cell << up)) >> up);
}

template <typename Unsigned>
void clampValues(std::span<Unsigned> cells, const ValueBits& bits) {
    using Signed = std::make_signed_t<Unsigned>;
    const std::int64_t span = std::int64_t{1} << bits.count, low = bits.ofSigned ? -span / 2 : 0;
    for (Unsigned& cell : cells) {
        const std::int64_t value = bits.signBits > 0
                                       ? std::int64_t{static_cast<Signed>(signExtended(cell, bits.signBits))}
                                       : std::int64_t{cell};
        cell = static_cast<Unsigned>(std::clamp(value >> bits.shift, low, low + span - 1));
    }
}

template <typename Unsigned>
void cutOutValues(std::span<Unsigned> cells, const ValueBits& bits) {
    constexpr int width = sizeof(Unsigned) * 8;
    if (bits.clean) return;
    if (bits.clamps) return clampValues(cells, bits);
    if (bits.signBits > 0 && bits.signBits < width) {
        for (Unsigned& cell : cells)
            cell = signExtended(static_cast<Unsigned>(cell >> bits.shift), bits.signBits);
    } else if (bits.shift > 0 || bits.count < width) {
        const auto mask = static_cast<Unsigned>(static_cast<Unsigned>(~Unsigned{0}) >> (width - bits.count));
        for (Unsigned& cell : cells) cell = static_cast<Unsigned>((cell >> bits.shift) & mask);
    }
}

Frame::Samples widened(Frame::Samples& cells, int width, bool isSigned) {
    return visitPatterns(cells, [&](auto from) {
        Frame::Samples result = makeCells(width, isSigned, from.size());
        visitPatterns(result, [&](auto to) {
            for (std::size_t i = 0; i < from.size(); ++i)
                to[i] = static_cast<typename decltype(to)::value_type>(from[i]);
        });
        return result;
    });
}

bool hasSign(const Frame::Samples& cells) {
    return std::visit([](const auto& v) { return std::is_signed_v<std::decay_t<decltype(v[0])>>; }, cells);
}

Frame::Samples greySamples(CodedPicture& picture, const PixelFormat& format) {
    const int width = std::max(pixelCell(format).allocated, cellBits(picture.cells));
    Frame::Samples samples = cellBits(picture.cells) == width && hasSign(picture.cells) == format.isSigned
                                 ? std::move(picture.cells)
                                 : widened(picture.cells, width, format.isSigned);
    const ValueBits bits = valueBits(picture, format);
    visitPatterns(samples, [&](auto cells) { cutOutValues(cells, bits); });
    return samples;
}

/// Cells of any width as 8 bits: the low bits are dropped, fewer than 8 are spread over the range.
std::vector<std::uint8_t> eightBits(CodedPicture& picture, const PixelFormat& format) {
    PixelFormat plain = format;
    plain.isSigned = false;
    const ValueBits bits = valueBits(picture, plain);
    visitPatterns(picture.cells, [&](auto cells) { cutOutValues(cells, bits); });
    if (bits.count == 8)
        if (auto* ready = std::get_if<std::vector<std::uint8_t>>(&picture.cells)) return std::move(*ready);
    return visitPatterns(picture.cells, [&](auto cells) {
        std::vector<std::uint8_t> result(cells.size());
        const std::uint32_t top = bits.count < 8 ? (1u << bits.count) - 1 : 255;
        for (std::size_t i = 0; i < cells.size(); ++i)
            result[i] = static_cast<std::uint8_t>(bits.count < 8 ? cells[i] * 255u / top
                                                                 : cells[i] >> (bits.count - 8));
        return result;
    });
}

std::vector<std::uint8_t> rgbTriples(CodedPicture& picture, const PixelFormat& format) {
    std::vector<std::uint8_t> triples = eightBits(picture, format);
    if (picture.components == 1) {
        std::vector<std::uint8_t> repeated(triples.size() * 3);
        for (std::size_t i = 0; i < repeated.size(); ++i) repeated[i] = triples[i / 3];
        return repeated;
    }
    if (picture.arrangement == Arrangement::Planar) {
        std::vector<std::uint8_t> interleaved(triples.size());
        interleave(triples, interleaved);
        triples = std::move(interleaved);
    }
    convertToRgb(triples, picture.colour);
    return triples;
}

/// A colour picture under a grey header.
CodedPicture luminancePicture(CodedPicture& picture, const PixelFormat& format) {
    const std::vector<std::uint8_t> triples = rgbTriples(picture, format);
    std::vector<std::uint8_t> grey(triples.size() / 3);
    for (std::size_t i = 0; i < grey.size(); ++i)
        grey[i] = luminance(triples[i * 3], triples[i * 3 + 1], triples[i * 3 + 2]);
    CodedPicture result;
    result.exactness = Exactness::Other;
    result.cells = std::move(grey);
    return result;
}

}  // namespace

ColourSpace colourSpaceOf(Photometric photometric) {
    switch (photometric) {
        case Photometric::YbrFull:
        case Photometric::YbrFull422:
        case Photometric::YbrIct:
            return ColourSpace::YbrFull;
        case Photometric::YbrPartial422:
        case Photometric::YbrPartial420:
            return ColourSpace::YbrPartial;
        default:
            return ColourSpace::Rgb;
    }
}

Result<Frame> toFrame(CodedPicture picture, const PixelFormat& format) {
    Frame frame{format.rows, format.columns, format.samplesPerPixel, {}};
    if (format.samplesPerPixel == 3) {
        frame.samples = rgbTriples(picture, format);
    } else if (picture.components == 3) {
        CodedPicture grey = luminancePicture(picture, format);
        frame.samples = greySamples(grey, format);
    } else {
        frame.samples = greySamples(picture, format);
    }
    const std::size_t samples = std::visit([](const auto& v) { return v.size(); }, frame.samples);
    if (samples != frame.pixelCount() * static_cast<std::size_t>(format.samplesPerPixel))
        return broken("the picture has another size than its header says");
    return frame;
}

}  // namespace cinedisc::dicom::codecs
