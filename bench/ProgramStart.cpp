#include "bench/ProgramStart.h"

#include "app/Main.h"

namespace cinedisc::bench {

void startProgram(const QString& folder) { Main(folder); }

}  // namespace cinedisc::bench
