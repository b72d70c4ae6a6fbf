#pragma once

#include "dicom/PixelFormat.h"

#include <cstddef>
#include <optional>
#include <span>

namespace cinedisc::dicom {

/// Bytes that beginsCodeStream wants to see.
constexpr std::size_t codeStreamSignatureBytes = 12;

/// Whether the bytes begin a compressed frame: JPEG and JPEG-LS (SOI), JPEG 2000 (SOC and SIZ, or its file
/// format), or, for `declared` RLE only, an RLE header (PS3.5 annex G.5). None of these occurs inside a frame
/// at the start of a fragment but by the cruellest chance.
bool beginsCodeStream(std::span<const std::byte> bytes, Compression declared);

/// What the bytes of a frame are, whatever its transfer syntax says; nothing when they show no known
/// signature.
std::optional<Compression> sniffCompression(std::span<const std::byte> frame);

}  // namespace cinedisc::dicom
