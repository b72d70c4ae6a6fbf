#pragma once

#include "platform/widgets/SystemWheel.h"
#include "platform/widgets/WheelFilter.h"
#include "viewer/MouseWheel.h"
#include "viewer/MouseWheelHook.h"

#include <QList>

class QWidget;

namespace cinedisc {

/// Wheel rolls over a window's strip move the strip of the main window, whichever window they come from: the
/// scroll bar to move is one value for the whole program.
class StripWheel : public MouseWheelHook {
  public:
    /// `watched`: the scroll bar and the previews of the window.
    explicit StripWheel(QList<QWidget*> watched);

    void MouseHook() override;
    void MouseUnhook() override;
    /// Whether wheel support was found.
    bool WheelPresent() const { return WheelPresent_; }

    /// The main window's scroll bar; null when there is no main window any more, and a roll raises run-time
    /// error 91.
    static void setMainScrollBar(RangeControl* sb1);

  private:
    QList<QWidget*> watched_;
    WheelFilter filter_;
    SystemWheel system_;
    qint32 OsWheelCode_ = 0;
    bool WheelPresent_ = false;
};

}  // namespace cinedisc
