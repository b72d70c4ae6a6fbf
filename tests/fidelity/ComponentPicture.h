#pragma once

#include "tests/fidelity/Pixels.h"

#include <QString>

namespace cinedisc::fidelity {

/// What the viewer component makes of a file.
struct ComponentPicture {
    Pixels first, last;  ///< the first and the last frame at 100 %; empty when there is no picture
    int frames = 0;
    QString notice;  ///< what stands in place of the picture, "" when there is one
};

/// Opens a file and draws it through the component's own pipeline.
ComponentPicture componentPicture(const QString& path);

}  // namespace cinedisc::fidelity
