#pragma once

#include <cstdint>
#include <string>

namespace cinedisc::dicom {

enum class Photometric {
    Monochrome1,
    Monochrome2,
    PaletteColor,
    Rgb,
    YbrFull,
    YbrFull422,
    YbrPartial422,
    YbrPartial420,
    YbrIct,
    YbrRct,
    Unknown
};

enum class SampleKind { Integer, Float, Double };

/// The image pixel description of a file (PS3.3 C.7.6.3), the same for all its frames.
struct PixelFormat {
    int rows = 0;
    int columns = 0;
    int samplesPerPixel = 1;
    int bitsAllocated = 8;  ///< 1, 8, 16, 32 (64 for Double)
    int bitsStored = 8;
    int highBit = 7;
    bool isSigned = false;
    bool planar = false;  ///< planar configuration 1: all of one sample, then all of the next
    Photometric photometric = Photometric::Monochrome2;
    SampleKind sampleKind = SampleKind::Integer;
    bool mayBeLossy = false;  ///< neither syntax nor header vouch that a reversible code stream is complete
};

/// How the pixels are packed, by the transfer syntax. For encapsulated pixels the bytes of a frame decide in
/// the end: files lie about the JPEG process inside.
enum class Compression { None, Rle, Jpeg, JpegLs, Jpeg2000, Unsupported };

}  // namespace cinedisc::dicom
