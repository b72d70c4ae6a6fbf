#pragma once

#include <string>
#include <string_view>

namespace cinedisc {

std::wstring widened(std::string_view utf8);
std::string narrowed(std::wstring_view text);

/// A path for the system's calls that take wide characters. A long one is made absolute and gets the prefix
/// that lifts the limit of 260 characters, which older systems keep whatever the manifest says.
std::wstring widePath(const std::string& path);

}  // namespace cinedisc
