#include "platform/widgets/DrawWindows.h"

#include "platform/widgets/EventGuard.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <memory>
#include <utility>
#include <vector>

namespace cinedisc {

namespace {

/// Keeps from its receivers, while it lives, what would begin something; afterwards they get it.
class PutOff : public QObject {
  public:
    PutOff() { QCoreApplication::instance()->installEventFilter(this); }
    ~PutOff() override {
        for (auto& [receiver, event] : events_)
            if (receiver) QCoreApplication::postEvent(receiver, event.release());
    }

    bool eventFilter(QObject* receiver, QEvent* event) override {
        const bool isWindow = receiver->isWindowType();
        // A window's own timer has it drawn.
        if (event->type() == QEvent::Timer) return !isWindow;
        if (!isWindow || (event->type() != QEvent::Resize && event->type() != QEvent::Close)) return false;
        event->ignore();
        events_.emplace_back(receiver, event->clone());
        return true;
    }

  private:
    std::vector<std::pair<QPointer<QObject>, std::unique_ptr<QEvent>>> events_;
    const EventGuard::Pause pause_;
};

}  // namespace

void drawWindows() {
    const PutOff others;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace cinedisc
