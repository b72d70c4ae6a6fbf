#pragma once

#include "dicom/Frame.h"
#include "dicom/FrameBytes.h"
#include "dicom/Result.h"

#include <compare>

namespace cinedisc {

/// The two steps to a frame of a run, apart, so that one thread can read while others decode. Safe to call
/// from any thread.
class FrameSteps {
  public:
    virtual ~FrameSteps() = default;
    /// Reads a frame, counted from 0. Waits for the disc.
    virtual dicom::Result<dicom::FrameBytes> readFrame(int index) const = 0;
    /// Decodes what was read. Waits for nothing.
    virtual dicom::Result<dicom::Frame> decodeRead(int index, const dicom::FrameBytes& bytes) const = 0;
};

/// Who wants a frame: what the user looks at comes before the previews.
enum class Asker { MainView, Preview };

/// A frame of the program: its run, and its number in it, counted from 0.
struct FrameKey {
    const FrameSteps* run = nullptr;
    int index = 0;
    auto operator<=>(const FrameKey&) const = default;
};

}  // namespace cinedisc
