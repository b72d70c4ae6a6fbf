#pragma once

#include <QObject>
#include <QWidget>

#include <functional>

namespace cinedisc::bench {

/// Waits until a widget has been drawn, and its window with it: calls `drawn` once from the message loop
/// after the first paint event for which `counts` holds.
class FirstPaint : public QObject {
  public:
    FirstPaint(QWidget& widget, std::function<bool()> counts, std::function<void()> drawn);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<bool()> counts_;
    std::function<void()> drawn_;
    bool done_ = false;
};

/// Ends the process at once: what follows is no part of what is measured.
[[noreturn]] void endMeasurement();

}  // namespace cinedisc::bench
