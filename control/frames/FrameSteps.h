#pragma once

#include "control/pipeline/CoverPlane.h"
#include "dicom/Frame.h"
#include "dicom/FrameBytes.h"
#include "dicom/Result.h"

#include <compare>
#include <memory>

namespace cinedisc {

/// A frame as it is drawn, or what is wrong with it.
struct DecodedFrame : dicom::Result<dicom::Frame> {
    using Result::Result;
    DecodedFrame(Result&& frame) : Result(std::move(frame)) {}

    std::shared_ptr<const CoverPlane> cover;  ///< what lies over it, null for nothing

    std::size_t coverBytes = 0;  ///< memory of a cover that is this frame's own

    std::size_t byteSize() const { return sizeof(*this) + (ok() ? value().byteSize() : 0) + coverBytes; }
};

/// The two steps to a frame of a run, apart, so that one thread can read while others decode. Safe to call
/// from any thread.
class FrameSteps {
  public:
    virtual ~FrameSteps() = default;
    /// Reads a frame, counted from 0. Waits for the disc.
    virtual dicom::Result<dicom::FrameBytes> readFrame(int index) const = 0;
    /// Decodes what was read.
    virtual DecodedFrame decodeRead(int index, const dicom::FrameBytes& bytes) const = 0;
};

/// Who wants something of the disc: what the user looks at comes before the previews, and an answer that a
/// command waits for before both.
enum class Asker { MainView, Preview, Probe };

/// A frame of the program: its run, and its number in it, counted from 0.
struct FrameKey {
    const FrameSteps* run = nullptr;
    int index = 0;
    auto operator<=>(const FrameKey&) const = default;
};

}  // namespace cinedisc
