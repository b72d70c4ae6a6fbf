#include "control/ViewAccessible.h"

#include "control/ezDICOMX.h"

#include <algorithm>

namespace cinedisc {

namespace {

QAccessible::Role roleOf(ViewRole role) {
    if (role == ViewRole::Probe) return QAccessible::Client;
    return role == ViewRole::Preview ? QAccessible::ListItem : QAccessible::Graphic;
}

QAccessibleInterface* viewInterface(const QString&, QObject* object) {
    auto* view = qobject_cast<ezDICOMX*>(object);
    return view ? new ViewAccessible(*view) : nullptr;
}

}  // namespace

ViewAccessible::ViewAccessible(ezDICOMX& view) : QAccessibleWidget(&view, roleOf(view.role())) {}

void ViewAccessible::install() {
    static const bool once = (QAccessible::installFactory(viewInterface), true);
    Q_UNUSED(once);
}

ezDICOMX& ViewAccessible::view() const { return *static_cast<ezDICOMX*>(widget()); }

bool ViewAccessible::isChosen() const {
    const QString path = view().FileName();
    if (path.isEmpty()) return false;
    const auto views = view().window()->findChildren<ezDICOMX*>();
    return std::ranges::any_of(views, [&](const ezDICOMX* other) {
        return other->role() == ViewRole::Main && other->FileName() == path;
    });
}

QString ViewAccessible::text(QAccessible::Text what) const {
    if (what == QAccessible::Value) return view().spokenPosition();
    if (what != QAccessible::Name) return QAccessibleWidget::text(what);
    QStringList words = view().spokenFile();
    words.prepend(QAccessibleWidget::text(QAccessible::Name));
    if (view().role() == ViewRole::Main) words.append(view().spokenPosition());
    words.removeAll({});
    return words.join(", ");
}

QAccessible::State ViewAccessible::state() const {
    auto state = QAccessibleWidget::state();
    if (view().role() == ViewRole::Preview) {
        state.selectable = true;
        state.selected = isChosen();
    }
    return state;
}

QStringList ViewAccessible::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (view().role() == ViewRole::Preview) names.prepend(pressAction());
    return names;
}

void ViewAccessible::doAction(const QString& action) {
    if (action == pressAction() && view().role() == ViewRole::Preview)
        emit view().clicked();
    else
        QAccessibleWidget::doAction(action);
}

}  // namespace cinedisc
