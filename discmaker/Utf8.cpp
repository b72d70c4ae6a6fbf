#include "discmaker/Utf8.h"

#include <QList>
#include <QString>

#include <algorithm>

namespace cinedisc::discmaker {

namespace {

constexpr qsizetype mostLetters = 256;

bool isAllowedInXml(char32_t letter) {
    return letter >= 0x20 && letter != 0xFFFE && letter != 0xFFFF && !QChar::isSurrogate(letter);
}

QString decoded(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

std::string oneLine(std::string_view text) {
    QString result;
    auto letters = decoded(text).simplified().toUcs4();
    letters.resize(std::min(letters.size(), mostLetters));
    for (const char32_t letter : letters) {
        if (letter < 0x20 || letter == 0x7F) {
            result += u' ';
        } else {
            result += QString::fromUcs4(isAllowedInXml(letter) ? &letter : U"\uFFFD", 1);
        }
    }
    return result.simplified().toStdString();
}

std::string lowered(std::string_view text) {
    return decoded(text).toLower().normalized(QString::NormalizationForm_C).toStdString();
}

}  // namespace cinedisc::discmaker
