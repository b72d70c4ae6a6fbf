#include "viewer/FormControls.h"

#include "viewer/WindowWords.h"

#include <algorithm>

namespace cinedisc {

void FormControls::moveToImage(Int16 index) const {
    if (stills && stills->isInForce()) {
        stills->show(index);
    } else {
        sb1.putValue((index + 1).value());
    }
}

void FormControls::showImagePosition() const {
    const bool countsSeries = stills && stills->isInForce();
    const int position = countsSeries ? File1.ListIndex() + 1 : sb1.Value();
    lblImg.putCaption(windowWords::imagePosition(position, File1.ListCount()));
}

void FormControls::showFramePosition() const {
    lblFra.putCaption(windowWords::framePosition(Slider2.Value()));
}

Int16 FormControls::neighbourOf(const QString& path, Int16 step) const {
    const Int16 files = File1.ListCount();
    const Int16 position = std::max(File1.positionOf(path), Int16(0)) + step;
    if (position == files) return 0;
    return position == -1 ? files - 1 : position;
}

}  // namespace cinedisc
