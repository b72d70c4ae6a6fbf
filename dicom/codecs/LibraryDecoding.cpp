#include "dicom/codecs/LibraryDecoding.h"

#include "dicom/codecs/LibraryProcesses.h"

namespace cinedisc::dicom {

namespace {

codecs::LibraryProcesses* processes = nullptr;

}  // namespace

void confineLibraryDecoders(int argumentCount, char** arguments) {
    auto confined = ConfinedProcesses::prepare(codecs::answerLibraryTask, argumentCount, arguments);
    // Never destroyed: frames may still be decoded while the program ends, and the processes end with it
    // anyway.
    if (confined) codecs::decodeInProcesses(new codecs::LibraryProcesses(std::move(confined)));
}

void codecs::decodeInProcesses(LibraryProcesses* theirs) { processes = theirs; }

Result<codecs::LibraryPicture> codecs::decodeByLibrary(std::span<const std::uint8_t> stream,
                                                       const LibraryTask& task) {
    return processes ? processes->decode(stream, task) : decodeInThisProcess(stream, task);
}

}  // namespace cinedisc::dicom
