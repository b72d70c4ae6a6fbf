#pragma once

#include "dicom/ByteSource.h"
#include "dicom/FrameSource.h"
#include "dicom/PixelElement.h"
#include "dicom/PixelFormat.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace cinedisc::dicom {

/// Frames of uncompressed pixel data, one behind the other, not even on byte boundaries when a pixel is a
/// bit.
class NativeFrames : public FrameSource {
  public:
    /// `announced` is nothing when the header gives no usable number: then there are as many as the data
    /// hold.
    NativeFrames(std::shared_ptr<const ByteSource> source, const PixelElement& pixels,
                 const PixelFormat& format, std::optional<int> announced, bool bigEndian);

    int count() const override { return count_; }
    /// Frames that the data would hold were the file complete.
    int announced() const { return announced_; }
    Result<FrameBytes> read(int frame) const override;

  private:
    std::shared_ptr<const ByteSource> source_;
    PixelElement pixels_;
    std::uint64_t frameBits_ = 0;
    bool swapsWords_ = false;  ///< single bytes written as big endian words
    int announced_ = 1;
    int count_ = 0;
};

}  // namespace cinedisc::dicom
