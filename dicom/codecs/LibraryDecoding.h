#pragma once

#include "dicom/codecs/LibraryTask.h"

namespace cinedisc::dicom::codecs {

class LibraryProcesses;

/// From now on decodeByLibrary works in these, which stay another's; in this process again when null. To be
/// called while nothing is decoded.
void decodeInProcesses(LibraryProcesses* processes);

/// Decodes in a confined process, or here where those are not wanted or not to be had. For a stream that
/// makes the process end or takes far too long, an error for the reason Decoder.
Result<LibraryPicture> decodeByLibrary(std::span<const std::uint8_t> stream, const LibraryTask& task);

}  // namespace cinedisc::dicom::codecs
