#include "platform/widgets/IndicatorOption.h"

#include <QLabel>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionButton>

namespace cinedisc {

IndicatorOption::IndicatorOption(const QString& caption, QLabel& words, QWidget* parent)
    : QRadioButton(caption, parent) {
    setAccessibleName(words.text());
    words.installEventFilter(this);
}

QSize IndicatorOption::sizeHint() const {
    QStyleOptionButton option;
    initStyleOption(&option);
    const QSize indicator(style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, &option, this),
                          style()->pixelMetric(QStyle::PM_ExclusiveIndicatorHeight, &option, this));
    constexpr int focusFrame = 2;
    return indicator.grownBy(QMargins(0, 0, focusFrame, focusFrame));
}

void IndicatorOption::initStyleOption(QStyleOptionButton* option) const {
    QRadioButton::initStyleOption(option);
    option->text.clear();
}

bool IndicatorOption::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton &&
            static_cast<QWidget*>(watched)->rect().contains(mouse->pos()))
            click();
    }
    return QRadioButton::eventFilter(watched, event);
}

}  // namespace cinedisc
