#pragma once

#include "dicom/ByteSource.h"
#include "dicom/Result.h"

#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::dicom {

/// Inflates a deflate stream (RFC 1951, or with the zlib wrapper that some writers leave around it) from
/// `offset` of the source to the stream's end. A stream that breaks off gives what came before. More than
/// `most` bytes is TooLarge, no byte at all is Broken.
Result<std::vector<std::byte>> inflateFrom(const ByteSource& source, std::uint64_t offset,
                                           std::uint64_t most);

}  // namespace cinedisc::dicom
