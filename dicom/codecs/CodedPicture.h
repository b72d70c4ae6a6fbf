#pragma once

#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace cinedisc::dicom::codecs {

/// What three components mean.
enum class ColourSpace { Rgb, YbrFull, YbrPartial };

/// How the components of a colour picture follow each other.
enum class Arrangement { Interleaved, Planar };

/// How cells compare with those that were encoded.
enum class Exactness {
    Same,  ///< bit for bit
    Near,  ///< coded as cells, with errors that may carry values out of the range that BitsStored gives them
    Other  ///< coded with the precision of the process, whatever the cells were
};

/// What was in a code stream, before the header's view of it is applied.
struct CodedPicture {
    int components = 1;     ///< 1 or 3
    int precision = 8;      ///< bits that count in a cell, from bit 0
    bool isSigned = false;  ///< the stream itself says that its samples are two's complement
    Exactness exactness = Exactness::Same;
    Arrangement arrangement = Arrangement::Interleaved;
    ColourSpace colour = ColourSpace::Rgb;
    std::optional<std::uint32_t>
        usedBits;  ///< all cells or'ed together, where known: it may save a pass over them
    Frame::Samples
        cells;  ///< bit patterns, whole number vectors only; what is above `precision` is zero, or the sign
};

/// What the photometric interpretation alone says about three components.
ColourSpace colourSpaceOf(Photometric photometric);

/// Applies the header: masks, sign, depth and colour, by these rules.
///
/// - Cells as wide as BitsAllocated that are the same as before coding are pixel cells: BitsStored and
/// HighBit
///   cut the value out of them (PS3.5 section 8.1.1). From those that are only near, values are taken without
///   cutting: one that lies beyond the range by an error of the coding becomes the end of the range.
/// - Otherwise the stream's precision wins over BitsStored: values are left as they stand in the stream,
///   unshifted. They are sign-extended when the header says signed, from the stream's sign bit when the
///   stream is signed too, otherwise from the higher one of both widths. Under a header that says unsigned, a
///   signed stream of more bits than BitsStored that is only near has its negative values raised to 0.
/// - Cells are widened to BitsAllocated, never narrowed.
/// - Three components become red, green and blue of 8 bit; a grey picture under a colour header is repeated
///   three times, a colour picture under a grey header becomes its luminance.
Result<Frame> toFrame(CodedPicture picture, const PixelFormat& format);

}  // namespace cinedisc::dicom::codecs
