#include "viewer/ViewerControls.h"

namespace cinedisc {

void ViewerControls::showImagePosition() const {
    lblImg.putCaption(QString("Image : %1/%2").arg(sb1.Value()).arg(File1.ListCount()));
}

void ViewerControls::showFramePosition() const {
    lblFra.putCaption(QString("Frame :%1").arg(Slider2.Value()));
}

}  // namespace cinedisc
