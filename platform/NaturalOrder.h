#pragma once

#include <QString>

namespace cinedisc {

/// Order of names on a disc: letter case ignored, runs of digits compared as numbers ("Series2" before
/// "Series10"). The same for every language and locale; names that differ only in case or leading zeros keep
/// a fixed order.
bool naturalLess(const QString& a, const QString& b);

}  // namespace cinedisc
