#pragma once

#include "dicom/FrameBytes.h"
#include "dicom/Result.h"

namespace cinedisc::dicom {

/// Finds and reads the frames of a file. Safe to call from several threads.
class FrameSource {
  public:
    virtual ~FrameSource() = default;

    /// Frames that can be asked for, as far as the file's length tells without reading on.
    virtual int count() const = 0;
    /// Reads a frame, counted from 0 and below count().
    virtual Result<FrameBytes> read(int frame) const = 0;
    /// Goes one step of the way to a frame that is found only by way of those before it. Returns whether it
    /// can be read without going further.
    virtual bool approach(int /*frame*/) const { return true; }
};

}  // namespace cinedisc::dicom
