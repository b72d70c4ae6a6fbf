#pragma once

#include "platform/RangeControl.h"

#include <QAbstractSlider>

namespace cinedisc {

/// What lowering Max below the value does besides pulling the value down.
enum class MaxPull {
    RaisesChange,  ///< the scroll bar: its change event runs
    Silent,        ///< the slider: a shorter run must not be sought to its end
};

/// A scroll bar or slider on a QAbstractSlider that somebody else owns. The change event is the slider's
/// valueChanged.
class RangeAdapter final : public RangeControl {
  public:
    RangeAdapter(QAbstractSlider& slider, MaxPull maxPull) : slider_(slider), maxPull_(maxPull) {}
    int Value() const override { return slider_.value(); }
    void putValue(int value) override;
    int Max() const override { return slider_.maximum(); }
    /// A maximum below the minimum raises run-time error 380.
    void putMax(int max) override;

  private:
    QAbstractSlider& slider_;
    MaxPull maxPull_;
};

}  // namespace cinedisc
