#pragma once

#include "control/pipeline/CoverPlane.h"
#include "dicom/CoarseFrame.h"
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

/// What is shown of a frame while it is being decoded. The cover is as fine as the frame's.
struct CoarsePicture : dicom::CoarseFrame {
    std::shared_ptr<const CoverPlane> cover;
};

/// What decoding a frame of a run takes, beside drawing it.
enum class DecodingWork {
    Little,
    Much,           ///< one processor, for long
    AllProcessors,  ///< even so for long: such frames are decoded one at a time
};

/// Who wants something of the disc: what the user looks at comes before the previews, and an answer that a
/// command waits for before both. Last comes what can wait until nobody waits for anything.
enum class Asker { MainView, Preview, Probe, WhenIdle };

/// The frames of one file. A frame takes two steps, so that one thread can read while others decode. Safe to
/// call from any thread.
class FrameRun {
  public:
    virtual ~FrameRun() = default;
    /// Reads a frame, counted from 0. Waits for the disc.
    virtual dicom::Result<dicom::FrameBytes> readFrame(int index) const = 0;
    /// Goes one step of the way to a frame that the file must be searched for. Returns whether it can be read
    /// without more of that. Waits for the disc.
    virtual bool approachFrame(int) const { return true; }
    /// Decodes what was read.
    virtual DecodedFrame decodeRead(int index, const dicom::FrameBytes& bytes) const = 0;
    virtual DecodingWork decodingWork() const { return DecodingWork::Little; }
    /// Bytes that decoding a frame may take for its time, where that is much: such frames are decoded one at
    /// a time, and others make room for them.
    virtual std::size_t decodingRoom() const { return 0; }
    /// A coarse picture of what was read, in time to be drawn; null where there is none.
    virtual std::shared_ptr<const CoarsePicture> decodeCoarse(int, const dicom::FrameBytes&, Asker) const {
        return nullptr;
    }
};

/// A frame of the program: its run, and its number in it, counted from 0.
struct FrameKey {
    const FrameRun* run = nullptr;
    int index = 0;
    auto operator<=>(const FrameKey&) const = default;
};

}  // namespace cinedisc
