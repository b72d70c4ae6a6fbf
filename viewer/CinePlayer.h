#pragma once

#include "viewer/FormControls.h"

namespace cinedisc {

/// Plays the frames of the shown file. It has no state of its own: direction, end mode, speed and playing are
/// the values of the controls, read afresh at every step. None of its handlers traps errors.
class CinePlayer {
  public:
    explicit CinePlayer(FormControls& controls) : form_(controls) {}

    void cmdPlay_Click();
    void cmdReverse_Click();
    void cmdStop_Click();
    /// Selecting the loop option also takes the window tool.
    void Option4_Click();
    /// Takes the speed slider's value over into the cine clock.
    void Slider1_Change();
    /// Milliseconds a frame at a position of the speed slider.
    static int intervalOf(int speed);

    /// One tick of the cine clock: one step of the picture, then a yield.
    void Timer4_Timer();
    /// A simpler frame clock that leaves sliders and labels alone.
    void Timer1_Timer();

    /// Stops at the shown frame and holds the range from it to the last frame.
    void hold();
    /// Gives the held range up and plays on.
    void resume();
    void selectForward() { form_.Option9.putValue(true); }
    void selectContinuous() { form_.Option11.putValue(true); }

  private:
    void loopForward();
    void loopReverse();
    void continueForward();
    void continueReverse();
    void showFrame(qint32 frame);
    void showFramePosition();
    void raiseSeekRange();
    void loadNeighbour(Int16 position);

    FormControls& form_;
};

}  // namespace cinedisc
