#include "platform/widgets/NamedButton.h"

#include "platform/widgets/EventGuard.h"
#include "platform/widgets/IconButton.h"

#include <QCoreApplication>
#include <QPushButton>

namespace cinedisc {

QPushButton* makeButton(const ButtonRow& row, QWidget* parent) {
    const bool captioned = *row.caption != '\0';
    const QString toolTip = QCoreApplication::translate("Commands", row.toolTip);
    auto* button = captioned ? new StateButton(QCoreApplication::translate("Commands", row.caption), parent)
                             : new IconButton(parent);
    button->setObjectName(row.name);
    button->setToolTip(toolTip);
    // A mouse click leaves no focus mark behind; the keyboard reaches every button.
    button->setFocusPolicy(Qt::TabFocus);
    if (row.icon != Icon::None) {
        button->setIcon(drawnIcon(row.icon));
        button->setIconSize(QSize(iconEdge, iconEdge));
    }
    if (!captioned) button->setAccessibleName(toolTip);
    return button;
}

void routeButtons(QWidget& root, const std::function<std::function<void()>(const QString& name)>& handlerOf) {
    for (QPushButton* button : root.findChildren<QPushButton*>()) {
        const QString name = button->objectName();
        if (!name.isEmpty())
            QObject::connect(button, &QPushButton::clicked, button, EventGuard::guarded(handlerOf(name)));
    }
}

}  // namespace cinedisc
