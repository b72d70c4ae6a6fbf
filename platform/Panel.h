#pragma once

namespace cinedisc {

/// Anything that is shown and hidden: a frame, a pop-up.
class Panel {
  public:
    virtual ~Panel() = default;
    virtual bool Visible() const = 0;
    virtual void putVisible(bool visible) = 0;
};

}  // namespace cinedisc
