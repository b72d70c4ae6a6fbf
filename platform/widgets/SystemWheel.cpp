#include "platform/widgets/SystemWheel.h"

#include "platform/widgets/EventGuard.h"

#include <QApplication>
#include <QCursor>
#include <QOperatingSystemVersion>
#include <QWidget>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace cinedisc {

SystemWheel::~SystemWheel() { listenFor(0); }

#ifdef Q_OS_WIN

std::optional<SystemVersion> systemVersion() {
    const auto version = QOperatingSystemVersion::current();
    return SystemVersion{VER_PLATFORM_WIN32_NT, static_cast<quint32>(version.majorVersion()),
                         static_cast<quint32>(version.minorVersion())};
}

quint32 registeredMessage(const char* name) { return RegisterWindowMessageA(name); }

void SystemWheel::listenFor(quint32 message) {
    message_ = message == WM_MOUSEWHEEL ? 0 : message;
    if (!qApp) return;
    qApp->removeNativeEventFilter(this);
    if (message_) qApp->installNativeEventFilter(this);
}

bool SystemWheel::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    const MSG& arrived = *static_cast<const MSG*>(message);
    QWidget* under = arrived.message == message_ ? QApplication::widgetAt(QCursor::pos()) : nullptr;
    if (!under) return false;
    const bool isAway = static_cast<qint32>(arrived.wParam) > 0;
    EventGuard::run([&] { handler_(*under, isAway ? WheelRoll::AwayFromUser : WheelRoll::TowardsUser); });
    return false;
}

#else

std::optional<SystemVersion> systemVersion() { return std::nullopt; }
quint32 registeredMessage(const char*) { return 0; }
void SystemWheel::listenFor(quint32) {}
bool SystemWheel::nativeEventFilter(const QByteArray&, void*, qintptr*) { return false; }

#endif

}  // namespace cinedisc
