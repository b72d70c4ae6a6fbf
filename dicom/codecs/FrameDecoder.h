#pragma once

#include "dicom/CoarseFrame.h"
#include "dicom/Frame.h"
#include "dicom/PixelFormat.h"
#include "dicom/Result.h"

#include <cstddef>
#include <optional>
#include <span>

namespace cinedisc::dicom {

/// What is wanted of a frame: the values that its header describes, or its pixel cells with the bits around
/// the values, unsigned. Compressed frames have such bits when they are grey, lossless and as precise as
/// BitsAllocated; asked for the cells of others, decodeFrame returns an error.
enum class CellBits { OfValues, All };

/// Turns the bytes of one frame into samples. `bytes` is the frame's whole code stream (fragments joined) or,
/// for Compression::None, its native pixels; `bigEndian` concerns native pixels only, and cells of 16 bits
/// and more: those of 8 bits are taken in the order in which they stand. `firstBit` is the position of the
/// frame's first bit in the first byte (0 except for 1-bit native frames that do not start on a byte). What
/// follows the frame is ignored.
///
/// Code streams are told by their own first bytes, whatever `compression` says; only native pixels and RLE
/// have none to tell. The frame always has the rows, columns and samples a pixel of `format`; grey samples
/// are 8, 16 or 32 bits wide as BitsAllocated asks, wider when the stream's precision does. Native, RLE,
/// JPEG-LS, JPEG 2000 and lossless streams of whole cells keep to BitsStored: values that a loss has carried
/// beyond become the end of the range. In other streams their own precision wins when it differs: samples are
/// left as they stand there, unshifted, and may then exceed BitsStored. So a look-up table must cover the
/// sample type, not only BitsStored.
///
/// Sizes are those of `format`. They and the work that a stream announces (scans, packets, code blocks,
/// tiles) are checked against its length, and what decoding takes against a ceiling, before anything is
/// allocated or a library is called. Never throws, never reads outside `bytes`, safe to call from several
/// threads at once. A frame whose data end early is a DecodeError; what a library merely warns of and does
/// not touch the picture is none.
Result<Frame> decodeFrame(std::span<const std::byte> bytes, const PixelFormat& format,
                          Compression compression, bool bigEndian = false, int firstBit = 0,
                          CellBits wanted = CellBits::OfValues);

/// Whether JPEG 2000 frames of this format are decoded by all processors together.
bool isDecodedOnAllProcessors(const PixelFormat& format);

/// A coarse picture of a frame whose code stream holds one (JPEG 2000): the smallest whose shorter side has
/// `leastSide` pixels or more. Empty where there is none, and for damaged streams. Like decodeFrame safe to
/// call with any bytes.
std::optional<CoarseFrame> decodeCoarseFrame(std::span<const std::byte> bytes, const PixelFormat& format,
                                             int leastSide);

}  // namespace cinedisc::dicom
