#pragma once

#include "platform/widgets/Icon.h"

namespace cinedisc {

enum class Side { AsDrawn, Mirrored };

/// What an icon is drawn of, on a grid of 24 by 24: see iconPath for the notation.
struct IconDrawing {
    Icon icon;
    const char* filled;
    const char* outlined;
    Side side = Side::AsDrawn;
};

/// An empty drawing for Icon::None.
const IconDrawing& iconDrawing(Icon icon);

}  // namespace cinedisc
