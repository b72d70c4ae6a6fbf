#include "platform/process/ConfinedProcess.h"

namespace cinedisc {

std::unique_ptr<ConfinedProcesses> ConfinedProcesses::prepare(ConfinedWork, int, char**) { return nullptr; }

}  // namespace cinedisc
