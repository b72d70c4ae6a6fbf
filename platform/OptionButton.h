#pragma once

namespace cinedisc {

/// One of a group of options. Selecting one by code runs its handler, unless it is selected already.
class OptionButton {
  public:
    virtual ~OptionButton() = default;
    virtual bool Value() const = 0;
    virtual void putValue(bool selected) = 0;
};

}  // namespace cinedisc
