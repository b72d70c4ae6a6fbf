#pragma once

#include "platform/WheelRoll.h"

#include <QObject>

#include <functional>

class QWidget;

namespace cinedisc {

/// Turns each wheel event with a vertical part over the watched widgets into one call of the handler,
/// whatever the event's size. The widget gets no wheel event: a scroll bar would make a step of its own.
class WheelFilter final : public QObject {
    Q_OBJECT

  public:
    explicit WheelFilter(std::function<void(WheelRoll)> handler, QObject* parent = nullptr);
    void watch(QWidget& widget);
    void unwatch(QWidget& widget);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void(WheelRoll)> handler_;
};

}  // namespace cinedisc
