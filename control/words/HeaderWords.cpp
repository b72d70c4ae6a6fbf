#include "control/words/HeaderWords.h"

#include "dicom/ReadableValues.h"

#include <QRegularExpression>

namespace cinedisc {

namespace {

bool isIdeographic(const QString& text) {
    for (const QChar c : text) {
        if (c.script() == QChar::Script_Han || c.script() == QChar::Script_Hangul) return true;
    }
    return false;
}

QString nameGroup(const QString& group) {
    QStringList parts = group.split('^');
    for (auto& part : parts) part = harmless(part);
    while (parts.size() < 5) parts.append(QString());
    // Family, given, middle, prefix, suffix. Ideographic names are written without a comma.
    if (isIdeographic(group)) {
        return QStringList{parts[0], parts[1], parts[2]}.filter(QRegularExpression(".")).join(' ');
    }
    const QString given = QStringList{parts[3], parts[1], parts[2]}.filter(QRegularExpression(".")).join(' ');
    return QStringList{parts[0], given, parts[4]}.filter(QRegularExpression(".")).join(", ");
}

}  // namespace

QStringList personNameLines(const QString& value) {
    constexpr qsizetype mostGroups = 3;  // alphabetic, ideographic, phonetic (PS3.5 section 6.2.1)
    QStringList lines;
    for (const QString& group : value.split('=').mid(0, mostGroups)) {
        const QString line = nameGroup(group);
        if (!line.isEmpty() && !lines.contains(line)) lines.append(line);
    }
    return lines;
}

QString readableDate(const QString& value) {
    const auto date = dicom::isoDate(value.trimmed().toStdString());
    return date ? QString::fromStdString(*date) : harmless(value);
}

QString readableTime(const QString& value) {
    static const QRegularExpression time(
        R"(^([01]\d|2[0-3])(?::?([0-5]\d)(?::?([0-5]\d|60)(?:[.]\d{1,6})?)?)?$)");
    const auto match = time.match(value.trimmed());
    if (!match.hasMatch()) return {};
    QString text = match.captured(1);
    if (match.capturedLength(2) == 0) return text + " h";
    text += ':' + match.captured(2);
    return match.capturedLength(3) == 0 ? text : text + ':' + match.captured(3);
}

QString harmless(const QString& text) {
    QString result = text;
    for (QChar& c : result) {
        const char16_t code = c.unicode();
        const bool redirects = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
        if (redirects || c.category() == QChar::Other_Control || code == 0x2028 || code == 0x2029) c = ' ';
    }
    return result.simplified();
}

}  // namespace cinedisc
