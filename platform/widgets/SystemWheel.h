#pragma once

#include "platform/WheelRoll.h"

#include <QAbstractNativeEventFilter>

#include <functional>
#include <optional>

class QWidget;

namespace cinedisc {

/// The platform's version as its own call tells it.
struct SystemVersion {
    quint32 platform, major, minor;
};

/// Nothing on a platform without numbered window messages.
std::optional<SystemVersion> systemVersion();
/// The number that the system keeps for messages of this name; 0 where there are none.
quint32 registeredMessage(const char* name);

/// Turns each window message of one number that arrives while the pointer is over a widget into one call of
/// the handler. The system's own wheel message is left to the toolkit, whose wheel event it becomes.
class SystemWheel final : public QAbstractNativeEventFilter {
  public:
    using Handler = std::function<void(QWidget& under, WheelRoll)>;

    explicit SystemWheel(Handler handler) : handler_(std::move(handler)) {}
    ~SystemWheel() override;
    void listenFor(quint32 message);

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  private:
    Handler handler_;
    quint32 message_ = 0;
};

}  // namespace cinedisc
