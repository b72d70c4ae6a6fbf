#pragma once

#include <QApplication>

namespace cinedisc {

/// The application object. What no handler's guard has caught (memory running out while painting, say) is
/// told like any untrapped error instead of passing through the event loop.
class GuardedApplication final : public QApplication {
    Q_OBJECT

  public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override;
};

}  // namespace cinedisc
