#pragma once

#include <QString>
#include <QStringList>

namespace cinedisc {

/// A person name of a header (PS3.5 section 6.2.1.2) as it is read by people, one line a component group:
/// "DOE^JOHN" is "DOE, JOHN".
QStringList personNameLines(const QString& value);

/// A date of a header as "2024-01-31"; anything else as it stands.
QString readableDate(const QString& value);

/// A time of day of a header, as far as it goes, as "14:05:09"; "" for anything else.
QString readableTime(const QString& value);

/// One line of text from a file: control characters, and those that change the direction of what follows,
/// become blanks.
QString harmless(const QString& text);

}  // namespace cinedisc
