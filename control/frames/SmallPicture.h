#pragma once

#include "control/pipeline/AxisTable.h"
#include "control/pipeline/GreyRule.h"
#include "control/pipeline/WindowInForce.h"

#include <QRect>

namespace cinedisc {

/// What makes a small picture of a file what it is: the file keeps the last one, so that previews that move
/// along the strip need not be drawn again from all their pixels.
struct SmallPicture {
    int frame = 0;  ///< counted from 1
    WindowInForce window;
    Polarity polarity = Polarity::Normal;
    QRect picture, visible;  ///< device pixels
    Smoothing smoothing = Smoothing::Smooth;

    friend bool operator==(const SmallPicture&, const SmallPicture&) = default;
};

}  // namespace cinedisc
