#pragma once

#include "platform/Int16.h"

namespace cinedisc {

/// The position in a stills series. It takes the scroll bar's place while the strip shows a preview a series.
class StillsPosition {
  public:
    virtual ~StillsPosition() = default;
    /// Whether the window shows stills.
    virtual bool isInForce() const = 0;
    /// Selects the file at `index` of File1, which has been loaded, and shows its place and its series' name.
    virtual void show(Int16 index) = 0;
};

}  // namespace cinedisc
