#pragma once

#include <string>
#include <string_view>

namespace cinedisc::discmaker {

/// A unique identifier below 2.25 (PS3.5 annex B.2), always the same for the same name: a 128-bit digest of
/// the name takes the place of the random UUID.
std::string uidFor(std::string_view name);

}  // namespace cinedisc::discmaker
