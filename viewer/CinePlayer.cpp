#include "viewer/CinePlayer.h"

namespace cinedisc {

void CinePlayer::cmdPlay_Click() {
    if (form_.ezDicom.FileName().isEmpty()) return;
    form_.Option9.putValue(true);
    form_.Timer4.putEnabled(true);
}

void CinePlayer::cmdReverse_Click() {
    if (form_.ezDicom.FileName().isEmpty()) return;
    form_.Option10.putValue(true);
    form_.Timer4.putEnabled(true);
}

void CinePlayer::cmdStop_Click() {
    if (form_.ezDicom.FileName().isEmpty()) return;
    form_.Timer4.putEnabled(false);
}

void CinePlayer::Option4_Click() { form_.ezDicom.putMouseMode(ViewerControl::MouseWindow); }

int CinePlayer::intervalOf(int speed) {
    if (speed < 5) return 110 - 10 * speed;
    if (speed < 10) return 100 - 10 * speed;
    return 1;
}

void CinePlayer::Slider1_Change() {
    form_.Timer4.putInterval(intervalOf(form_.Slider1.Value()));
    form_.messages.doEvents();
}

void CinePlayer::Timer4_Timer() {
    // Labelling is not for a running cine.
    if (form_.ezDicom.MouseMode() == ViewerControl::MouseLabel) {
        form_.ezDicom.putMouseMode(ViewerControl::MouseWindow);
    }
    if (form_.Option9.Value() && form_.Option4.Value()) {
        loopForward();
    } else if (form_.Option10.Value() && form_.Option4.Value()) {
        loopReverse();
    } else if (form_.Option11.Value() && form_.Option9.Value()) {
        continueForward();
    } else if (form_.isReverseContinuous()) {
        continueReverse();
        form_.messages.doEvents();
    }
    form_.messages.doEvents();
}

void CinePlayer::loopForward() {
    ViewerControl& view = form_.ezDicom;
    if (view.CurrentFrame() < view.FrameCount()) {
        form_.Slider2.putMax(view.FrameCount());
        showFrame(view.CurrentFrame() + 1);
    } else {
        view.putCurrentFrame(1);
        raiseSeekRange();
        showFramePosition();
    }
}

void CinePlayer::loopReverse() {
    ViewerControl& view = form_.ezDicom;
    const bool atStart = view.CurrentFrame() < 2;
    raiseSeekRange();
    showFrame(atStart ? view.FrameCount() : view.CurrentFrame() - 1);
}

void CinePlayer::continueForward() {
    ViewerControl& view = form_.ezDicom;
    if (view.CurrentFrame() < view.FrameCount()) {
        raiseSeekRange();
        showFrame(view.CurrentFrame() + 1);
        return;
    }
    if (form_.File1.ListCount() == 0) {
        // The disc is gone: the shown file plays on from its start.
        showFrame(1);
        return;
    }
    loadNeighbour(form_.neighbourOf(view.FileName(), 1));
    form_.Slider2.putValue(view.CurrentFrame());
    form_.showImagePosition();
    form_.showFramePosition();
}

void CinePlayer::continueReverse() {
    ViewerControl& view = form_.ezDicom;
    if (view.CurrentFrame() >= 2) {
        raiseSeekRange();
        showFrame(view.CurrentFrame() - 1);
        return;
    }
    if (form_.File1.ListCount() == 0) {
        raiseSeekRange();
        showFrame(view.FrameCount());
        return;
    }
    loadNeighbour(form_.neighbourOf(view.FileName(), -1));
    view.putCurrentFrame(view.FrameCount());
    form_.Slider2.putValue(view.CurrentFrame());
    form_.showImagePosition();
    form_.showFramePosition();
}

void CinePlayer::loadNeighbour(Int16 position) {
    form_.ezDicom.putFileName(form_.File1.fullPath(position));
    raiseSeekRange();
    form_.moveToImage(position);
}

void CinePlayer::showFrame(qint32 frame) {
    form_.ezDicom.putCurrentFrame(frame);
    showFramePosition();
}

void CinePlayer::showFramePosition() {
    form_.Slider2.putValue(form_.ezDicom.CurrentFrame());
    form_.showFramePosition();
}

void CinePlayer::raiseSeekRange() {
    if (form_.ezDicom.FrameCount() >= 2) form_.Slider2.putMax(form_.ezDicom.FrameCount());
}

void CinePlayer::Timer1_Timer() {
    ViewerControl& view = form_.ezDicom;
    view.putCurrentFrame(view.CurrentFrame() < view.FrameCount() ? view.CurrentFrame() + 1 : 1);
    form_.messages.doEvents();
}

void CinePlayer::hold() {
    ViewerControl& view = form_.ezDicom;
    view.putRangeStart(view.CurrentFrame());
    view.putRangeEnd(view.FrameCount());
    view.putRangeModeA(3);
    view.putRangeModeB(3);
    form_.Timer4.putEnabled(false);
}

void CinePlayer::resume() {
    form_.ezDicom.putRangeModeA(1);
    form_.ezDicom.putRangeModeB(1);
    form_.Timer4.putEnabled(true);
}

}  // namespace cinedisc
