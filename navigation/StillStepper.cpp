#include "navigation/StillStepper.h"

#include <cmath>

namespace cinedisc {

void StillStepper::step(Direction direction) {
    trapErrors([&] {
        FileListBox& File1 = form_.File1;
        if (File1.ListCount() <= 0) return;
        File1.putListIndex(wrappedStep(File1.ListIndex(), File1.ListCount(), direction));

        ViewerControl& view = form_.ezDicom;
        const bool windowToKeep = view.FrameCount() > 0;
        const double center = view.WindowCenter();
        const Int16 width = std::llrint(view.WindowWidth());
        const Int16 polarity = view.Polarity();
        view.putFileName(File1.fullPath(File1.ListIndex()));
        // A view that showed no picture has no window to hand on.
        if (windowToKeep) {
            view.putWindowCenter(center);
            view.putWindowWidth(width.value());
        }
        view.putPolarity(polarity.value());
        stills_.show(File1.ListIndex());
    });
}

}  // namespace cinedisc
