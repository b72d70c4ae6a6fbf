#include "platform/widgets/PlainTextDelegate.h"

namespace cinedisc {

QString PlainTextDelegate::displayText(const QVariant& value, const QLocale&) const {
    return oneLine(value.toString());
}

QString oneLine(const QString& text) {
    constexpr qsizetype drawn = 400;
    QString line = text.left(drawn);
    for (QChar& character : line)
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = u' ';
    return line;
}

QString plainToolTip(const QString& text) { return QString("<p>%1</p>").arg(oneLine(text).toHtmlEscaped()); }

}  // namespace cinedisc
