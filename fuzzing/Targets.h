#pragma once

#include <cstddef>
#include <span>

/// What any bytes may be given to without harm: each function ends for any input, without a fault that a
/// sanitizer sees, in little time and memory.
namespace cinedisc::fuzzing {

using Bytes = std::span<const std::byte>;

/// A DICOM file: its header, as text too.
void header(Bytes file);
/// A DICOM file: where its frames begin and end, native or encapsulated, and their bytes.
void frames(Bytes file);
/// A DICOM file: pictures of its frames as they are drawn, with shutter, overlays, tables and words.
void presentation(Bytes file);
/// One frame behind the format that a header would give it, see CodedInput.h.
void native(Bytes input);
void rle(Bytes input);
void lossless(Bytes input);
void jpegls(Bytes input);
void jpeg(Bytes input);
void jpeg2000(Bytes input);
/// The terms of a specific character set up to the first line end, then text.
void text(Bytes input);
/// The catalogue of a disc.
void catalogue(Bytes file);
/// The DICOMDIR of a disc that another is made from.
void directory(Bytes file);

struct Target {
    const char* name;
    void (*run)(Bytes);
};

inline constexpr Target targets[] = {
    {"header", header},
    {"frames", frames},
    {"presentation", presentation},
    {"native", native},
    {"rle", rle},
    {"lossless", lossless},
    {"jpegls", jpegls},
    {"jpeg", jpeg},
    {"jpeg2000", jpeg2000},
    {"text", text},
    {"catalogue", catalogue},
    {"directory", directory},
};

}  // namespace cinedisc::fuzzing
