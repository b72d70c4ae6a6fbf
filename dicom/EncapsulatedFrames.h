#pragma once

#include "dicom/ByteSource.h"
#include "dicom/DataSet.h"
#include "dicom/FrameGrouping.h"
#include "dicom/FrameSource.h"
#include "dicom/OffsetTable.h"
#include "dicom/PixelElement.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace cinedisc::dicom {

/// Frames of encapsulated pixel data (PS3.5 annex A.4).
///
/// With an offset table a frame is one read from its first item to the next frame's. The items found there
/// must fill that stretch exactly; otherwise the table is wrong and forgotten. Without one the items are
/// walked over as frames are asked for: 8 bytes for each one passed, and nothing but the frame itself for the
/// one that is next.
class EncapsulatedFrames : public FrameSource {
  public:
    struct Expectation {
        std::optional<int> announced;        ///< frames by the header, when it gives a usable number
        std::uint64_t nativeFrameBytes = 0;  ///< of a frame when uncompressed
        Compression declared = Compression::None;
        bool isStated = true;  ///< false: the header gives no number, which means a single frame
    };

    /// Reads the offset table and nothing of the frames.
    EncapsulatedFrames(std::shared_ptr<const ByteSource> source, const PixelElement& pixels,
                       const DataSet& header, const Expectation& expected);

    int count() const override { return count_; }
    int announced() const { return announced_; }
    Result<FrameBytes> read(int frame) const override;
    bool approach(int frame) const override;
    /// The first bytes of the first frame, to see what it is.
    std::vector<std::byte> firstBytes() const;

  private:
    std::optional<std::size_t> framesUpToCut(std::size_t frame) const;
    int framesByTable() const;
    std::optional<Result<FrameBytes>> readByTable(int frame) const;
    Result<FrameBytes> readByWalking(int frame) const;
    DecodeError missingFrame(int frame) const;
    bool extend(std::vector<std::byte>& stretch, std::uint64_t from, std::size_t frame) const;
    FrameBytes withoutItemHeaders(std::vector<std::byte> stretch, std::uint64_t from,
                                  std::size_t frame) const;
    std::uint64_t likelyFrameEnd(std::size_t frame) const;
    std::uint64_t mostFrameBytes() const;

    std::shared_ptr<const ByteSource> source_;
    PixelElement pixels_;
    std::uint64_t end_ = 0;  ///< of the pixel data at most
    std::uint64_t nativeFrameBytes_ = 0;
    Compression declared_;
    OffsetTable table_;
    int announced_ = 1;
    int count_ = 0;
    mutable std::atomic<bool> tableIsUsable_ = false;
    mutable std::mutex mutex_;  ///< guards grouping_
    mutable FrameGrouping grouping_;
};

}  // namespace cinedisc::dicom
