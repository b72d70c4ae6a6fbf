#include "app/Confinement.h"

#include "catalogue/ParserProcesses.h"
#include "dicom/codecs/LibraryDecoding.h"
#include "dicom/codecs/LibraryProcesses.h"

namespace cinedisc {

namespace {

void work(std::span<std::byte> memory) {
    isParserTask(memory) ? answerParserTask(memory) : dicom::codecs::answerLibraryTask(memory);
}

}  // namespace

void confineLibraries(int argumentCount, char** arguments) {
    const std::shared_ptr processes = ConfinedProcesses::prepare(work, argumentCount, arguments);
    if (!processes) return;
    // Never destroyed: frames may still be decoded while the program ends, and the processes end with it
    // anyway.
    dicom::codecs::decodeInProcesses(new dicom::codecs::LibraryProcesses(processes));
    parseInProcesses(new ParserProcesses(processes));
}

}  // namespace cinedisc
