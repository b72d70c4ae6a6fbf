#pragma once

#include "dicom/Frame.h"

namespace cinedisc::dicom {

/// A frame at a fraction of its size, for the eye while the frame itself is being decoded. Its values are
/// near those of the frame, not the same: never for copies, exports, or anything that is measured.
///
/// Its sample in column x, row y stands at the frame's column x << halvings, row y << halvings.
struct CoarseFrame {
    Frame frame;
    int halvings = 1;
};

}  // namespace cinedisc::dicom
