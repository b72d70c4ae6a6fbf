#pragma once

#include "discmaker/DemoImage.h"
#include "discmaker/DiscMaker.h"

namespace cinedisc::discmaker {

/// Writes the demo disc: simulated patients with simulated angiograms, the same bytes every time. No
/// files are named. Raises
/// DiscError.
void makeDemoDisc(const DiscRequest& request, DemoSize size = DemoSize::Full);

}  // namespace cinedisc::discmaker
