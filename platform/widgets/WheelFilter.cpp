#include "platform/widgets/WheelFilter.h"

#include "platform/widgets/EventGuard.h"

#include <QWheelEvent>
#include <QWidget>

#include <utility>

namespace cinedisc {

WheelFilter::WheelFilter(std::function<void(WheelRoll)> handler, QObject* parent)
    : QObject(parent), handler_(std::move(handler)) {}

void WheelFilter::watch(QWidget& widget) { widget.installEventFilter(this); }

void WheelFilter::unwatch(QWidget& widget) { widget.removeEventFilter(this); }

bool WheelFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Wheel) return QObject::eventFilter(watched, event);
    event->accept();
    if (const int vertical = static_cast<QWheelEvent*>(event)->angleDelta().y(); vertical != 0)
        EventGuard::run([&] { handler_(vertical > 0 ? WheelRoll::AwayFromUser : WheelRoll::TowardsUser); });
    return true;
}

}  // namespace cinedisc
