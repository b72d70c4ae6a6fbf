#pragma once

#include "viewer/FormControls.h"

namespace cinedisc {

/// Moves by hand: a frame, an image file, or straight to a frame. Every command does nothing while no file is
/// loaded, and errors end it quietly.
class FrameStepper {
  public:
    explicit FrameStepper(FormControls& controls) : form_(controls) {}

    void cmdNext_Click();
    void cmdPrev_Click();
    void cmdNextImage_Click();
    void cmdPrevImage_Click();
    void Slider2_Change();
    void showFirst();
    void showLast();

  private:
    template <typename Handler>
    void whenLoaded(Handler&& handler);
    void showFrame(qint32 frame);
    void showStep();
    void openImage(Int16 position);

    FormControls& form_;
};

}  // namespace cinedisc
