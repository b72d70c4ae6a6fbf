#pragma once

#include <QString>

namespace cinedisc::bench {

/// Makes and shows the program's main window for the disc in a folder: as the program does it, or, in the
/// plain twin, without any thread beside the user interface's.
void startProgram(const QString& folder);

}  // namespace cinedisc::bench
