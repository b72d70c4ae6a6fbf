#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

/// Tells the person at the command line about something that does not stop the work.
using Report = std::function<void(const std::string&)>;

/// All regular files that are named or lie below named folders, each once, in natural order of their paths
/// below what was named. Links to folders are not followed. Named things that do not exist, or lie inside
/// `disc`, raise DiscError; `disc` itself is passed over; folders that cannot be read are told to `report`.
std::vector<std::filesystem::path> collectFiles(std::span<const std::filesystem::path> named,
                                                const std::filesystem::path& disc, const Report& report);

}  // namespace cinedisc::discmaker
