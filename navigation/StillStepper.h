#pragma once

#include "navigation/Direction.h"
#include "viewer/FormControls.h"
#include "viewer/StillsPosition.h"

namespace cinedisc {

/// Steps the files of a stills series, wrapping, with window and polarity kept. Errors end a step quietly.
class StillStepper {
  public:
    StillStepper(FormControls& controls, StillsPosition& stills) : form_(controls), stills_(stills) {}

    void cmdNextSeries_Click() { step(Direction::Next); }
    void cmdPreviousSeries_Click() { step(Direction::Previous); }

  private:
    void step(Direction direction);

    FormControls& form_;
    StillsPosition& stills_;
};

}  // namespace cinedisc
