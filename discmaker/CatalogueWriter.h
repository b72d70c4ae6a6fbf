#pragma once

#include "discmaker/DiscPlan.h"

#include <string>

namespace cinedisc::discmaker {

/// The comment in the head of every catalogue that makedisc writes; it tells its folders from others'.
inline constexpr const char* catalogueMark = " Written by makedisc. ";

/// The disc's catalogue (`CD.xml`) as UTF-8. Each level's first child holds its text, the following ones the
/// next level.
std::string catalogueXml(const DiscPlan& plan);

}  // namespace cinedisc::discmaker
