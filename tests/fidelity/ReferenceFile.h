#pragma once

#include "tests/fidelity/HeaderReader.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cinedisc::fidelity {

/// A sample file read and decoded without anything of the project: parsed by DCMTK, decoded by DCMTK's codecs
/// or, for JPEG 2000, by OpenJPEG.
class ReferenceFile {
  public:
    explicit ReferenceFile(const std::string& path);

    bool isDicom() const { return isDicom_; }
    bool hasPixels();
    HeaderReader header() { return HeaderReader(*file_.getDataset()); }
    std::string syntaxUid() const { return syntaxUid_; }
    /// Whether the stored values come back as they were.
    bool isLossless() const;
    int frames();
    /// What decodes the pixels here.
    std::string decoderName() const;

    /// One frame, counted from 0, as a data set of its own with native pixels; null when it cannot be
    /// decoded.
    std::unique_ptr<DcmDataset> nativeFrame(int frame);

  private:
    std::vector<std::vector<Uint8>> encapsulatedFrames();
    bool decodeNative(DcmDataset& into, int frame);
    bool decodeWithDcmtk(DcmDataset& into, const std::vector<Uint8>& stream);

    DcmFileFormat file_;
    bool isDicom_ = false;
    std::string syntaxUid_;
};

}  // namespace cinedisc::fidelity
