#include "viewer/ImageLoader.h"

namespace cinedisc {

void ImageLoader::LoadImage(Int16 index) {
    trapErrors([&] {
        const ViewerControl& preview = form_.thumb(index);
        if (preview.FileName().isEmpty()) return;
        if (stills_.isInForce()) {
            loadStill(preview);
        } else {
            loadRun(preview);
        }
    });
}

void ImageLoader::loadRun(const ViewerControl& preview) {
    // The strip may move under the preview when sb1 is put: its file is read once.
    const QString file = preview.FileName();
    form_.ezDicom.putFileName(file);
    form_.ezDicom.putBestFit(true);
    if (form_.isReverseContinuous()) form_.ezDicom.putCurrentFrame(form_.ezDicom.FrameCount());
    const Int16 found = form_.File1.positionOf(file);
    if (found >= 0) form_.sb1.putValue((found + 1).value());
    form_.showImagePosition();
    form_.Timer4.putEnabled(true);
}

void ImageLoader::loadStill(const ViewerControl& preview) {
    form_.ezDicom.putFileName(preview.FileName());
    form_.ezDicom.putBestFit(true);
    form_.File1.putPath(preview.Tag());
    form_.File1.Refresh();
    Label1_.putCaption(form_.File1.Path());
    stills_.show(0);
}

}  // namespace cinedisc
