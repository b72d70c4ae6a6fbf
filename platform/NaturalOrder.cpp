#include "platform/NaturalOrder.h"

namespace cinedisc {

namespace {

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

/// The run of digits at `position` without leading zeros; moves `position` past it.
QStringView digitRun(QStringView text, qsizetype& position) {
    while (position < text.size() && text[position] == u'0') ++position;
    const qsizetype start = position;
    while (position < text.size() && isDigit(text[position])) ++position;
    return text.sliced(start, position - start);
}

/// Below, at or above 0 as `a` comes before, with or after `b`.
int compareFolded(QStringView a, QStringView b) {
    qsizetype i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const auto left = digitRun(a, i), right = digitRun(b, j);
            if (left.size() != right.size()) return left.size() < right.size() ? -1 : 1;
            if (const int order = left.compare(right)) return order;
        } else {
            if (a[i] != b[j]) return a[i] < b[j] ? -1 : 1;
            ++i, ++j;
        }
    }
    return int(j == b.size()) - int(i == a.size());
}

}  // namespace

bool naturalLess(const QString& a, const QString& b) {
    const int order = compareFolded(a.toCaseFolded(), b.toCaseFolded());
    return order != 0 ? order < 0 : a < b;
}

}  // namespace cinedisc
