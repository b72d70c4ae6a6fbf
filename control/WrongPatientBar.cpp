#include "control/WrongPatientBar.h"

#include "control/words/ViewWords.h"
#include "platform/Paths.h"

#include <QAccessible>

#include <algorithm>

namespace cinedisc {

WrongPatientBar::WrongPatientBar(QWidget& view) : QLabel(viewWords::wrongPatient(), &view) {
    setObjectName("wrongPatientBar");
    setAccessibleName(text());
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
    setMargin(6);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAutoFillBackground(true);
    // Nothing else in the program has this colour.
    setStyleSheet("background: #c4006a; color: white; font-weight: bold;");
    hide();
}

void WrongPatientBar::judge(const QString& path, const QString& namedFolder) {
    const bool isWrong = !namedFolder.isEmpty() && !path.isEmpty() && !isBelow(path, namedFolder);
    if (isWrong == !isHidden()) return;
    setVisible(isWrong);
    if (!isWrong) return;
    raise();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

int WrongPatientBar::layOut(const QRect& area) {
    if (isHidden()) return 0;
    const int height = std::min(heightForWidth(area.width()), area.height());
    setGeometry(area.x(), area.y(), area.width(), height);
    return height;
}

}  // namespace cinedisc
