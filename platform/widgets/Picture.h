#pragma once

#include <QIcon>

namespace cinedisc {

/// The drawn pictures of the buttons and the tree.
enum class Picture {
    None,
    Disc,
    Folder,
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

/// Edge of a picture on a button, in device-independent pixels.
constexpr int pictureSize = 20;

/// Drawn from paths at whatever size and pixel density is asked for, in the colours of the palette.
QIcon pictureIcon(Picture picture);

}  // namespace cinedisc
