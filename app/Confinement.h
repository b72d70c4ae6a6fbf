#pragma once

namespace cinedisc {

/// Has what others wrote and the disc feeds (the decoders of JPEG and JPEG 2000, the parser of the catalogue)
/// work in confined processes from now on, and in this one only where the system has no such processes. To be
/// called before anything else in main, with its arguments, and once (ConfinedProcesses::prepare).
void confineLibraries(int argumentCount, char** arguments);

}  // namespace cinedisc
