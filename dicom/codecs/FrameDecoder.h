#pragma once

#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstddef>
#include <span>

namespace cinedisc::dicom {

/// Turns the bytes of one frame into samples. `bytes` is the frame's whole code stream (fragments joined) or,
/// for Compression::None, its native pixels; `bigEndian` concerns native pixels only. `firstBit` is the
/// position of the frame's first bit in the first byte (0 except for 1-bit native frames that do not start on
/// a byte).
///
/// Sizes are those of `format`, checked against the code stream before anything is allocated; never throws,
/// never reads outside `bytes`, safe to call from several threads at once. A frame whose data end early is a
/// DecodeError.
Result<Frame> decodeFrame(std::span<const std::byte> bytes, const PixelFormat& format,
                          Compression compression, bool bigEndian = false, int firstBit = 0);

}  // namespace cinedisc::dicom
