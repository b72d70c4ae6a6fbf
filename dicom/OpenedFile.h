#pragma once

#include "dicom/DicomFile.h"
#include "dicom/FileHeader.h"
#include "dicom/Picture.h"
#include "dicom/codecs/FrameDecoder.h"

#include <atomic>
#include <mutex>

namespace cinedisc::dicom {

/// A file whose header has been read. What is needed for some pictures only is worked out when first asked
/// for.
class OpenedFile : public DicomFile {
  public:
    explicit OpenedFile(FileHeader header) : header_(std::move(header)), picture_(openPicture(header_)) {}

    const DataSet& header() const override { return header_.elements; }
    const std::string& transferSyntax() const override { return header_.syntaxUid; }
    const PixelFormat& pixelFormat() const override { return picture_.format; }
    Compression compression() const override { return picture_.compression; }
    bool beginsAsProgram() const override { return header_.beginsAsProgram; }
    int frameCount() const override { return picture_.frameCount; }
    int announcedFrameCount() const override { return picture_.announcedFrameCount; }
    const std::optional<DecodeError>& pictureError() const override { return picture_.error; }
    Result<FrameBytes> readFrame(int frame) const override;
    bool approachFrame(int frame) const override {
        return missing(frame) || picture_.frames->approach(frame);
    }
    Result<Frame> decodeRead(int frame, const FrameBytes& bytes) const override;
    bool isSlowToDecode() const override { return picture_.compression == Compression::Jpeg2000; }
    bool decodesOnAllProcessors() const override;
    std::optional<CoarseFrame> decodeCoarse(int frame, const FrameBytes& bytes, int leastSide) const override;
    GreyTransform greyTransform(int frame) const override;
    bool hasGreyRulesByFrame() const override;
    const std::optional<Palette>& palette() const override;
    Shutter shutter(int frame) const override;
    bool hasShuttersByFrame() const override;
    const std::vector<Overlay>& overlays() const override;
    std::vector<std::uint8_t> overlayBits(const Overlay& overlay, int frame) const override;
    std::vector<std::uint8_t> overlayBitsIn(const FrameBytes& bytes, const Overlay& overlay,
                                            int frame) const override;
    PixelAspect pixelAspect() const override;
    std::string text(Tag tag) const override;
    DataSet elementsBehindPixels() const override;

  private:
    std::optional<DecodeError> missing(int frame) const;
    Result<Frame> decodeBytes(const FrameBytes& bytes, CellBits wanted) const;
    Result<Frame> decodeUndeflated(const FrameBytes& bytes, CellBits wanted) const;
    bool makesDecodersEnd() const;
    Result<Frame> decodeInflated(const FrameBytes& bytes, CellBits wanted) const;
    Compression compressionOf(const FrameBytes& bytes) const;
    FrameBytes inflated(const FrameBytes& bytes) const;

    FileHeader header_;
    Picture picture_;
    mutable std::atomic<int> lostDecoders_ = 0;
    mutable std::once_flag paletteOnce_, overlaysOnce_, greyOnce_;
    mutable bool hasGreyRulesByFrame_ = false;
    mutable std::optional<Palette> palette_;
    mutable std::vector<Overlay> overlays_;
};

}  // namespace cinedisc::dicom
