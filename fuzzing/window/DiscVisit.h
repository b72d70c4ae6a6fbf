#pragma once

#include "fuzzing/window/Mutation.h"
#include "fuzzing/window/Watch.h"

#include <QString>

namespace cinedisc::fuzzing::window {

/// Makes a disc of a few patients in that folder, whose files come from `files` and whose catalogue comes
/// from `catalogues`, and damages it: folders and files are missing, renamed, replaced by links that go
/// round, by pipes and devices.
void makeDamagedDisc(const QString& folder, const Mutation& files, const Mutation& catalogues,
                     unsigned number);

/// Opens the disc in that folder by the main window's command, steps through it by its buttons, and goes on
/// while files of it are replaced. An untrapped error is a fault.
void visitDisc(const QString& folder, const Mutation& files, unsigned number, Watch& watch);

}  // namespace cinedisc::fuzzing::window
