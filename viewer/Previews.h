#pragma once

#include "platform/Int16.h"
#include "platform/RunTimeError.h"
#include "viewer/ViewerControl.h"

#include <array>

namespace cinedisc {

/// The five previews of the strip, a control array with the indices 0 to 4.
class Previews {
  public:
    static constexpr int count = 5;

    explicit Previews(const std::array<ViewerControl*, count>& views) : views_(views) {}

    /// Preview `index`; an index outside the array raises run-time error 340.
    ViewerControl& operator()(Int16 index) const {
        if (index < 0 || index >= count) throw RunTimeError::noArrayElement(index.value());
        return *views_[static_cast<std::size_t>(index.value())];
    }
    auto begin() const { return views_.begin(); }
    auto end() const { return views_.end(); }

  private:
    std::array<ViewerControl*, count> views_;
};

}  // namespace cinedisc
