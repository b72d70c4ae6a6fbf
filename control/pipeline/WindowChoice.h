#pragma once

#include "control/pipeline/WindowInForce.h"

#include <optional>

namespace cinedisc {

/// The window that was put by hand or by the program, on top of what the file asks for. A value: copies keep
/// a state to go back to.
class WindowChoice {
  public:
    WindowInForce over(const WindowInForce& own) const {
        return chosen_ ? WindowInForce{false, *chosen_} : own;
    }

    bool isMade() const { return chosen_.has_value(); }
    /// Putting the window that a table in force returns, to the nearest whole number, leaves the table in
    /// force.
    void putCenter(const WindowInForce& own, double center);
    /// A width that cannot be used is ignored.
    void putWidth(const WindowInForce& own, double width);

  private:
    std::optional<dicom::Window> chosen_;
};

}  // namespace cinedisc
