#include "viewer/FrameStepper.h"

namespace cinedisc {

template <typename Handler>
void FrameStepper::whenLoaded(Handler&& handler) {
    trapErrors([&] {
        if (!form_.ezDicom.FileName().isEmpty()) handler(form_.ezDicom);
    });
}

void FrameStepper::cmdNext_Click() {
    whenLoaded([this](ViewerControl& view) {
        view.putCurrentFrame(view.CurrentFrame() < view.FrameCount() ? view.CurrentFrame() + 1 : 1);
        showStep();
    });
}

void FrameStepper::cmdPrev_Click() {
    whenLoaded([this](ViewerControl& view) {
        view.putCurrentFrame(view.CurrentFrame() >= 2 ? view.CurrentFrame() - 1 : view.FrameCount());
        showStep();
    });
}

void FrameStepper::showFirst() { showFrame(1); }
void FrameStepper::showLast() { showFrame(form_.ezDicom.FrameCount()); }

void FrameStepper::showFrame(qint32 frame) {
    whenLoaded([this, frame](ViewerControl& view) {
        view.putCurrentFrame(frame);
        showStep();
    });
}

void FrameStepper::showStep() {
    form_.Slider2.putValue(form_.ezDicom.CurrentFrame());
    form_.showImagePosition();
    form_.showFramePosition();
}

void FrameStepper::cmdNextImage_Click() {
    whenLoaded([this](ViewerControl& view) {
        if (form_.File1.ListCount() == 0) return;
        const Int16 next = form_.neighbourOf(view.FileName(), 1);
        openImage(next);
        form_.moveToImage(next);
        form_.showImagePosition();
        form_.showFramePosition();
    });
}

void FrameStepper::cmdPrevImage_Click() {
    whenLoaded([this](ViewerControl& view) {
        if (form_.File1.ListCount() == 0) return;
        const Int16 previous = form_.neighbourOf(view.FileName(), -1);
        openImage(previous);
        if (form_.isReverseContinuous()) view.putCurrentFrame(view.FrameCount());
        form_.moveToImage(previous);
        form_.showImagePosition();
        form_.showFramePosition();
    });
}

void FrameStepper::openImage(Int16 position) { form_.ezDicom.putFileName(form_.File1.fullPath(position)); }

void FrameStepper::Slider2_Change() {
    whenLoaded([this](ViewerControl& view) {
        if (view.CurrentFrame() == form_.Slider2.Value()) return;
        view.putCurrentFrame(form_.Slider2.Value());
        form_.showImagePosition();
        form_.showFramePosition();
    });
}

}  // namespace cinedisc
