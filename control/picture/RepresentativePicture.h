#pragma once

#include "control/picture/LoadedPicture.h"
#include "control/picture/PictureRenderer.h"

#include <QPainter>
#include <QRect>

namespace cinedisc {

/// What a preview draws of a run in place of its first frame, which the contrast medium has not reached yet,
/// so that all runs of a patient look alike: the frame that the file calls representative, or else one a
/// third into the run. It comes once the disc has nothing else to do. Owned by the view, on the
/// user-interface thread.
class RepresentativePicture {
  public:
    explicit RepresentativePicture(ImageLibrary& library) : picture_(library), renderer_(picture_) {}

    /// To be told before each drawing what the preview has loaded.
    void follow(const LoadedPicture& loaded);
    /// Lets go of the file.
    void leave();
    /// Whether it has come since it was last asked for.
    bool takeArrival();
    /// As PictureRenderer::paintPreview; draws nothing before it has come.
    QRect paint(QPainter& painter, double pixelRatio, const Placement& placement, Smoothing smoothing);

  private:
    LoadedPicture picture_;
    PictureRenderer renderer_;
    bool isHere_ = false;
};

}  // namespace cinedisc
