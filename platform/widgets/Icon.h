#pragma once

#include <QCursor>
#include <QIcon>

namespace cinedisc {

/// The icons of the buttons and the tree.
enum class Icon {
    None,
    Disc,
    Folder,
    Document,
    Parent,
    List,
    Details,
    Question,
    Warning,
    Window,
    Magnify,
    Label,
    Pan,
    Play,
    Reverse,
    NextFrame,
    PreviousFrame,
    NextImage,
    PreviousImage,
    Next,
    Previous,
    Patient,
    Program,
};

/// Edge of an icon on a button, in device-independent pixels.
constexpr int iconEdge = 20;

/// Drawn from paths at whatever size and pixel density is asked for, in the colours of the palette.
QIcon drawnIcon(Icon icon);

/// The icon as a shape of the pointer. `hotSpot` is where it points, on the icons' grid of 24 by 24.
QCursor drawnCursor(Icon icon, QPoint hotSpot);

}  // namespace cinedisc
