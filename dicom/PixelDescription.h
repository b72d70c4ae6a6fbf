#pragma once

#include "dicom/DataSet.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstdint>
#include <optional>

namespace cinedisc::dicom {

/// The image pixel module of a header (PS3.3 C.7.6.3), contradictions settled: bits stored and high bit lie
/// within the cell, photometric interpretation and samples per pixel agree. An error says why no picture can
/// be made of it; frames beyond a ceiling are TooLarge.
Result<PixelFormat> readPixelFormat(const DataSet& header, Tag pixelTag);

/// Frames that the header announces: 1 when it says nothing, nothing when what it says is no number of
/// frames.
std::optional<int> statedFrameCount(const DataSet& header);

/// Whether the header says how many frames there are, be it right or wrong.
bool statesFrameCount(const DataSet& header);

/// Bits that a frame of native pixels takes, at most. Subsampled colour may take less.
std::uint64_t nativeFrameBits(const PixelFormat& format);

/// Bits of a frame with two chrominances for each pair of pixels (YBR_FULL_422), rows made of whole pairs.
std::uint64_t subsampledFrameBits(const PixelFormat& format);

}  // namespace cinedisc::dicom
