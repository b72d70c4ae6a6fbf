#pragma once

namespace cinedisc::fuzzing::window {

/// Plays a disc of 200 runs for so many ticks of the cine, from run to run, with steps of series and
/// patients, and prints memory and open files as it goes. Returns whether they stayed as they were: memory
/// within 5 % of what it was after the first tenth.
bool endures(int ticks);

}  // namespace cinedisc::fuzzing::window
