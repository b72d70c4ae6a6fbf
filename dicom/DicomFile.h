#pragma once

#include "dicom/ByteSource.h"
#include "dicom/CoarseFrame.h"
#include "dicom/DataSet.h"
#include "dicom/Frame.h"
#include "dicom/FrameBytes.h"
#include "dicom/LongValues.h"
#include "dicom/PixelFormat.h"
#include "dicom/Presentation.h"
#include "dicom/Result.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cinedisc::dicom {

/// An opened DICOM file: its header, and its frames decoded one at a time when asked for.
///
/// Opening reads the header once, from the start, and nothing of the pixels but the offset table. Frames are
/// read when asked for. Immutable after opening; any thread may decode.
class DicomFile {
  public:
    /// Opens a file by its path in the platform's encoding (UTF-8 on Linux).
    static Result<std::shared_ptr<const DicomFile>> open(const std::string& path);
    static Result<std::shared_ptr<const DicomFile>> open(std::shared_ptr<const ByteSource> source);
    virtual ~DicomFile() = default;

    /// The whole header, file meta information first, with the pixel data (not held) as its last element.
    virtual const DataSet& header() const = 0;
    /// What stands behind the pixel data, read when asked for; empty for encapsulated pixels, whose end is
    /// far to seek.
    virtual DataSet elementsBehindPixels() const { return {}; }
    virtual const std::string& transferSyntax() const = 0;
    virtual const PixelFormat& pixelFormat() const = 0;
    virtual Compression compression() const = 0;
    /// Whether a system would also run the file as a program.
    virtual bool beginsAsProgram() const { return false; }

    /// Frames that can be asked for: 0 when there is no picture. What the header says unless the file's
    /// length proves fewer.
    virtual int frameCount() const = 0;
    /// Frames that the header announces, which a cut-off file has not.
    virtual int announcedFrameCount() const = 0;
    /// Why there is no picture, when frameCount() is 0.
    virtual const std::optional<DecodeError>& pictureError() const = 0;

    /// Reads a frame, counted from 0, as it stands in the file. Nothing is decoded.
    virtual Result<FrameBytes> readFrame(int frame) const = 0;
    /// Goes one step of the way to a frame, counted from 0, where a file must be searched for it from its
    /// start. Returns whether readFrame need not search any further.
    virtual bool approachFrame(int /*frame*/) const { return true; }
    /// Decodes what readFrame gave for that frame. Nothing is read.
    virtual Result<Frame> decodeRead(int frame, const FrameBytes& bytes) const = 0;
    /// Whether decoding a frame takes much longer than drawing it.
    virtual bool isSlowToDecode() const { return false; }
    /// Whether all processors work on one of them: then nothing is gained by decoding several at a time.
    virtual bool decodesOnAllProcessors() const { return false; }
    /// A coarse picture of what readFrame gave for that frame, at hand in a fraction of the time; its shorter
    /// side has `leastSide` pixels or more. Empty where there is none, and where one need not wait for the
    /// frame itself.
    virtual std::optional<CoarseFrame> decodeCoarse(int, const FrameBytes&, int /*leastSide*/) const {
        return std::nullopt;
    }
    /// Reads and decodes a frame, counted from 0.
    Result<Frame> decode(int frame) const {
        const auto bytes = readFrame(frame);
        return bytes ? decodeRead(frame, bytes.value()) : Result<Frame>(bytes.error());
    }

    /// Grey rules of a frame, counted from 0: per-frame and shared functional groups are taken into account.
    virtual GreyTransform greyTransform(int frame) const = 0;
    /// Whether grey rules may differ from frame to frame.
    virtual bool hasGreyRulesByFrame() const { return true; }
    virtual const std::optional<Palette>& palette() const = 0;
    /// The shutter of a frame, counted from 0.
    virtual Shutter shutter(int frame) const = 0;
    /// Whether shutters may differ from frame to frame.
    virtual bool hasShuttersByFrame() const { return false; }
    /// Overlay planes, in group order. Those embedded in the pixel cells and large multi-frame ones hold no
    /// bits: ask overlayBits.
    virtual const std::vector<Overlay>& overlays() const = 0;
    /// The bits of one overlay for one image frame (counted from 0), empty when it has none for that frame.
    virtual std::vector<std::uint8_t> overlayBits(const Overlay& overlay, int frame) const = 0;
    /// The same without reading what lies in the pixel cells again: `bytes` is what readFrame gave for that
    /// frame.
    virtual std::vector<std::uint8_t> overlayBitsIn(const FrameBytes&, const Overlay& overlay,
                                                    int frame) const {
        return overlayBits(overlay, frame);
    }
    virtual PixelAspect pixelAspect() const = 0;

    /// The header text of an element as UTF-8, whatever the specific character set; person names as they
    /// stand.
    virtual std::string text(Tag tag) const = 0;
};

/// One line of the header page.
struct HeaderLine {
    int depth = 0;  ///< nesting, 0 for the data set itself
    Tag tag;
    std::string vr;
    std::string keyword;
    std::string value;  ///< UTF-8, one line
};

/// All elements in file order, nested sequences after their element.
std::vector<HeaderLine> describeHeader(const DicomFile& file, LongValues longValues = LongValues::Cut);
/// The same as plain text, one line an element, columns aligned, for the header page and the clipboard.
std::string headerText(const DicomFile& file, LongValues longValues = LongValues::Cut);

}  // namespace cinedisc::dicom
