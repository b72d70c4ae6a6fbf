#include "control/picture/WrappedText.h"

#include <QTextLayout>

#include <algorithm>

namespace cinedisc {

QStringList wrapped(const QString& line, const QFont& font, double width, int mostRows) {
    QTextLayout layout(line, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList rows;
    layout.beginLayout();
    for (QTextLine row = layout.createLine(); row.isValid(); row = layout.createLine()) {
        row.setLineWidth(width);
        const bool isLast = row.textStart() + row.textLength() >= line.size();
        if (rows.size() + 1 == mostRows && !isLast) {
            rows.append(QFontMetricsF(font).elidedText(line.mid(row.textStart()), Qt::ElideRight, width));
            break;
        }
        rows.append(line.mid(row.textStart(), row.textLength()).trimmed());
    }
    layout.endLayout();
    return rows;
}

double widestOf(const QStringList& rows, const QFontMetricsF& metrics) {
    double widest = 0;
    for (const QString& row : rows) widest = std::max(widest, metrics.horizontalAdvance(row));
    return widest;
}

}  // namespace cinedisc
