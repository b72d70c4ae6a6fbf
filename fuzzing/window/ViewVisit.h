#pragma once

#include "fuzzing/window/Watch.h"

#include <QString>

namespace cinedisc::fuzzing::window {

/// What a visit of a file has shown.
struct Shown {
    int frames = 0;
    /// What the view says in place of the picture or about it, "" when that is nothing.
    QString notice;

    bool isPicture() const { return frames > 0 && !notice.contains("cannot be shown"); }
};

/// Opens a file in the component as it stands in a window and does what can be done with it: goes through
/// some frames, reads and copies the header, changes the window, the size and the tools, exports now and
/// then.
Shown visitFile(const QString& path, Watch& watch);

}  // namespace cinedisc::fuzzing::window
