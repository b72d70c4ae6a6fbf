#pragma once

#include "discmaker/DiscPlan.h"
#include "discmaker/Enclosures.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace cinedisc::discmaker {

/// Writes content `number` of a plan into a new file.
using ContentWriter = std::function<void(std::size_t number, const std::filesystem::path& target)>;

enum class Workers { One, AllProcessors };

/// Writes a planned disc into the folder `disc`, its catalogue last. With several workers `write` is called
/// from several threads. `others` are moved into the folder Other, which no catalogue lists.
void writeDisc(const std::filesystem::path& disc, const DiscPlan& plan, const Enclosures& enclosures,
               const ContentWriter& write, Workers workers,
               const std::vector<std::filesystem::path>& others = {});

}  // namespace cinedisc::discmaker
