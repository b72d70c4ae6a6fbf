#pragma once

#include "viewer/FormControls.h"

namespace cinedisc {

/// Two timer routines that step frames without the sliders. The program drives them with no timer of its own.
class TimerSteppers {
  public:
    TimerSteppers(FormControls& controls, Label& folderLabel) : form_(controls), Label1_(folderLabel) {}

    /// One frame back, wrapping; shows the interval of `timer`.
    void stepReverse(const TimerControl& timer);
    /// One frame forward; at the last frame on to the next file of the list, wrapping.
    void stepForward();

  private:
    FormControls& form_;
    Label& Label1_;
    Int16 position_ = 0;
};

}  // namespace cinedisc
