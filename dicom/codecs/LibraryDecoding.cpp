#include "dicom/codecs/LibraryDecoding.h"

#include "dicom/codecs/LibraryProcesses.h"

namespace cinedisc::dicom::codecs {

namespace {

LibraryProcesses* processesInUse = nullptr;

}  // namespace

void decodeInProcesses(LibraryProcesses* processes) { processesInUse = processes; }

Result<LibraryPicture> decodeByLibrary(std::span<const std::uint8_t> stream, const LibraryTask& task) {
    return processesInUse ? processesInUse->decode(stream, task) : decodeInThisProcess(stream, task);
}

}  // namespace cinedisc::dicom::codecs
