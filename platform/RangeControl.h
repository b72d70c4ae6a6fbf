#pragma once

namespace cinedisc {

/// A scroll bar or slider as the logic sees it.
///
/// Putting a value outside its range raises run-time error 380. Putting the value it has raises no change
/// event; any other raises it before the put returns.
class RangeControl {
  public:
    virtual ~RangeControl() = default;
    virtual int Value() const = 0;
    virtual void putValue(int value) = 0;
    virtual int Max() const = 0;
    /// A maximum below the value pulls the value down.
    virtual void putMax(int max) = 0;
};

}  // namespace cinedisc
