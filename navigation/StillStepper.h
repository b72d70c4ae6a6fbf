#pragma once

#include "navigation/Direction.h"
#include "viewer/StillsPosition.h"
#include "viewer/ViewerControls.h"

namespace cinedisc {

/// Steps the files of a stills series, wrapping, with window and polarity kept. Errors end a step quietly.
class StillStepper {
  public:
    StillStepper(ViewerControls& controls, StillsPosition& stills) : form_(controls), stills_(stills) {}

    void cmdNextSeries_Click() { step(Direction::Next); }
    void cmdPreviousSeries_Click() { step(Direction::Previous); }

  private:
    void step(Direction direction);

    ViewerControls& form_;
    StillsPosition& stills_;
};

}  // namespace cinedisc
