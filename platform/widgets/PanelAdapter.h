#pragma once

#include "platform/Panel.h"

#include <QWidget>

namespace cinedisc {

/// Shows and hides a widget that somebody else owns. Visible is the widget's own state: a panel inside a
/// hidden one, or in a window that is not shown yet, keeps it.
class PanelAdapter final : public Panel {
  public:
    explicit PanelAdapter(QWidget& widget) : widget_(widget) {}
    bool Visible() const override { return !widget_.isHidden(); }
    void putVisible(bool visible) override { widget_.setVisible(visible); }

  private:
    QWidget& widget_;
};

}  // namespace cinedisc
