#include "viewer/TimerSteppers.h"

namespace cinedisc {

void TimerSteppers::stepReverse(const TimerControl& timer) {
    ViewerControl& view = form_.ezDicom;
    view.putCurrentFrame(view.CurrentFrame() >= 2 ? view.CurrentFrame() - 1 : view.FrameCount());
    Label1_.putCaption(QString::number(timer.Interval()));
    form_.messages.doEvents();
}

void TimerSteppers::stepForward() {
    ViewerControl& view = form_.ezDicom;
    if (view.CurrentFrame() < view.FrameCount()) {
        view.putCurrentFrame(view.CurrentFrame() + 1);
        return;
    }
    if (form_.File1.ListCount() == 0) return;
    ++position_;
    if (position_ >= form_.File1.ListCount()) position_ = 0;
    view.putFileName(form_.File1.fullPath(position_));
}

}  // namespace cinedisc
