#pragma once

#include "discmaker/DiscFolder.h"
#include "discmaker/DiscPlan.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace cinedisc::discmaker {

/// What may lie beside the catalogue.
struct Enclosures {
    /// Programs, copied under their own names, and folders, whose contents are copied.
    std::vector<std::filesystem::path> programs;
    std::optional<std::filesystem::path> license;  ///< copied as `license.txt`
    bool autorun = false;                          ///< writes an `autorun.inf` that starts `cinedisc.exe`
};

/// Writes content `number` of a plan into a new file.
using ContentWriter = std::function<void(std::size_t number, const std::filesystem::path& target)>;

enum class Workers { One, AllProcessors };

/// Writes a planned disc into its folder and publishes it. With several workers `write` is called from
/// several threads.
void writeDisc(DiscFolder& folder, const DiscPlan& plan, const Enclosures& enclosures,
               const ContentWriter& write, Workers workers);

}  // namespace cinedisc::discmaker
