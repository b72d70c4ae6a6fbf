#include "platform/widgets/GuardedApplication.h"

#include "platform/widgets/EventGuard.h"

namespace cinedisc {

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
    bool handled = false;
    EventGuard::protect([&] { handled = QApplication::notify(receiver, event); });
    return handled;
}

}  // namespace cinedisc
