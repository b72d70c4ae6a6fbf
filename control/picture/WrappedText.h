#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QString>
#include <QStringList>

#include <limits>

namespace cinedisc {

/// A line broken into rows that are no wider than so many logical pixels: between words, inside them only
/// where one is too wide. What `mostRows` cannot hold ends the last row with an ellipsis.
QStringList wrapped(const QString& line, const QFont& font, double width,
                    int mostRows = std::numeric_limits<int>::max());

double widestOf(const QStringList& rows, const QFontMetricsF& metrics);

}  // namespace cinedisc
