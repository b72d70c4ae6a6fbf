#pragma once

#include "platform/widgets/Icon.h"

#include <QRgb>

#include <span>

namespace cinedisc {

enum class Side { AsDrawn, Mirrored };

/// What an icon is drawn of, on a grid of 24 by 24: see iconPath for the notation.
struct IconDrawing {
    Icon icon;
    const char* filled;
    const char* outlined;
    Side side = Side::AsDrawn;
};

/// A layer of the program's own icon, which has colours: on a grid of 64 by 64, lines 3.5 wide.
struct ProgramLayer {
    QRgb colour;
    const char* filled;
    const char* outlined;
};
std::span<const ProgramLayer> programIcon();

/// An empty drawing for Icon::None and the program's.
const IconDrawing& iconDrawing(Icon icon);

}  // namespace cinedisc
