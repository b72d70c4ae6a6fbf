#include "platform/widgets/StateButton.h"

#include <QStyleOptionButton>

#include <utility>

namespace cinedisc {

void StateButton::setActive(bool on) {
    if (on == std::exchange(isActive_, on)) return;
    // For those who do not see it.
    setAccessibleDescription(on ? tr("In force") : QString());
    update();
}

void StateButton::initStyleOption(QStyleOptionButton* option) const {
    QPushButton::initStyleOption(option);
    option->state.setFlag(QStyle::State_On, isActive_);
}

}  // namespace cinedisc
