#pragma once

#include "discmaker/DemoImage.h"
#include "discmaker/DiscWriter.h"

#include <filesystem>
#include <string>

namespace cinedisc::discmaker {

/// Writes the demo disc: simulated patients with simulated angiograms, the same bytes every time. Raises
/// DiscError.
void makeDemoDisc(const std::filesystem::path& disc, const std::string& title, const Enclosures& enclosures,
                  DemoSize size = DemoSize::Full);

}  // namespace cinedisc::discmaker
