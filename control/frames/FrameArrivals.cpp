#include "control/frames/FrameArrivals.h"

namespace cinedisc {

void FrameArrivals::tell() {
    if (told_.exchange(true)) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            told_ = false;
            emit arrived();
        },
        Qt::QueuedConnection);
}

}  // namespace cinedisc
