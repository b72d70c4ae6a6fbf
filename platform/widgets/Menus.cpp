#include "platform/widgets/Menus.h"

#include "platform/widgets/EventGuard.h"

#include <QCoreApplication>
#include <QHash>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace cinedisc {

void buildMenus(QMenuBar& bar, std::span<const MenuRow> rows,
                const std::function<std::function<void()>(const QString& name)>& handlerOf) {
    // A desktop that shows menus elsewhere would take them out of the window.
    bar.setNativeMenuBar(false);
    QHash<QString, QMenu*> menus;
    for (const MenuRow& row : rows) {
        const QString name = row.name;
        const QString caption = QCoreApplication::translate("Commands", row.caption);
        QMenu* parent = menus.value(row.menu);
        QAction* action = nullptr;
        if (row.kind == MenuKind::Menu) {
            QMenu* menu = parent ? parent->addMenu(caption) : bar.addMenu(caption);
            menu->setObjectName(name);
            menus.insert(name, menu);
            action = menu->menuAction();
        } else {
            Q_ASSERT(parent);
            action = parent->addAction(caption);
            QObject::connect(action, &QAction::triggered, &bar, EventGuard::guarded(handlerOf(name)));
        }
        action->setObjectName(name);
        action->setMenuRole(QAction::NoRole);
        if (*row.shortcut != '\0') action->setShortcut(QKeySequence(row.shortcut));
    }
    // A menu that would open on nothing does not look as if it could.
    for (QMenu* menu : menus) menu->menuAction()->setEnabled(!menu->isEmpty());
}

}  // namespace cinedisc
