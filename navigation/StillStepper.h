#pragma once

#include "navigation/Direction.h"
#include "viewer/ImageLoader.h"
#include "viewer/ViewerControls.h"

namespace cinedisc {

/// Steps the files of a stills series, wrapping, with window and polarity kept. Errors end a step quietly.
class StillStepper {
  public:
    StillStepper(ViewerControls& controls, ImageLoader& loader) : form_(controls), loader_(loader) {}

    void cmdNextSeries_Click() { step(Direction::Next); }
    void cmdPreviousSeries_Click() { step(Direction::Previous); }

  private:
    void step(Direction direction);

    ViewerControls& form_;
    ImageLoader& loader_;
};

}  // namespace cinedisc
