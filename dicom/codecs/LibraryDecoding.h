#pragma once

#include "dicom/codecs/LibraryTask.h"

namespace cinedisc::dicom {

/// Has the decoders of others (JPEG of 8 and 12 bits, JPEG 2000) work in confined processes from now on, and
/// in this one only where the system has no such processes. To be called before anything else in main, with
/// its arguments, and once (ConfinedProcesses::prepare).
void confineLibraryDecoders(int argumentCount, char** arguments);

namespace codecs {

class LibraryProcesses;

/// From now on decodeByLibrary works in these, which stay another's; in this process again when null. To be
/// called while nothing is decoded.
void decodeInProcesses(LibraryProcesses* processes);

/// Decodes in a confined process, or here where those are not wanted or not to be had. For a stream that
/// makes the process end or takes far too long, an error for the reason Decoder.
Result<LibraryPicture> decodeByLibrary(std::span<const std::uint8_t> stream, const LibraryTask& task);

}  // namespace codecs
}  // namespace cinedisc::dicom
