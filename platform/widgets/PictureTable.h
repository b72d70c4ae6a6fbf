#pragma once

#include "platform/widgets/Picture.h"

namespace cinedisc {

enum class Side { AsDrawn, Mirrored };

/// What a picture is drawn of, on a grid of 24 by 24: see picturePath for the notation.
struct PictureDrawing {
    Picture picture;
    const char* filled;
    const char* outlined;
    Side side = Side::AsDrawn;
};

/// An empty drawing for Picture::None.
const PictureDrawing& pictureDrawing(Picture picture);

}  // namespace cinedisc
