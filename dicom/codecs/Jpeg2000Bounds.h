#pragma once

#include "dicom/Result.h"
#include "dicom/codecs/Jpeg2000Coding.h"

#include <cstdint>
#include <span>

namespace cinedisc::dicom::codecs {

/// Reads how the tiles of a code stream are coded, those with coding parameters of their own included, and
/// returns how many bytes a library needs for its book-keeping, samples not counted. An error when the stream
/// announces more tiles, packets or code blocks than its length can justify: each of them takes at least some
/// bits of it, but for the code blocks of a blank picture, which are many only when they are unusually small.
Result<std::uint64_t> jpeg2000Overhead(std::span<const std::uint8_t> stream, const Jpeg2000Grid& grid);

}  // namespace cinedisc::dicom::codecs
