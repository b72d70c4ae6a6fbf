#pragma once

#include "control/picture/LoadedPicture.h"
#include "control/picture/PictureLabels.h"
#include "control/picture/PictureRenderer.h"
#include "control/picture/RepresentativePicture.h"
#include "control/pipeline/ViewZoom.h"

#include <QRectF>
#include <QSize>

namespace cinedisc {

/// What a view shows and how: what the component and its mouse tools work on together. Owned by the
/// component.
struct ViewState {
    explicit ViewState(ImageLibrary& library)
        : picture(library), renderer(picture), representative(library) {}
    ViewState(const ViewState&) = delete;
    ViewState& operator=(const ViewState&) = delete;

    Placement placement() const { return zoom.place(renderer.squareSize(), deviceSize); }
    /// Where the whole picture lies, in the view's logical pixels.
    QRectF pictureRect() const {
        const QRectF device = placement().picture;
        return {device.topLeft() / pixelRatio, device.size() / pixelRatio};
    }
    void panBy(QPointF devicePixels) { zoom.pan(devicePixels, renderer.squareSize(), deviceSize); }

    LoadedPicture picture;
    PictureRenderer renderer;
    RepresentativePicture representative;  ///< of a preview
    ViewZoom zoom;
    Smoothing smoothing = Smoothing::Smooth;
    PictureLabels labels;
    QSize deviceSize;       ///< of the area that pictures are drawn in, device pixels
    double pixelRatio = 1;  ///< device pixels per logical pixel
};

}  // namespace cinedisc
