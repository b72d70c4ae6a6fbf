#pragma once

#include "control/pipeline/FrameRows.h"
#include "dicom/DicomFile.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace cinedisc {

/// The tables behind a picture's greys or colours, kept between frames and made anew only when something they
/// depend on changes.
class DisplayTables {
  public:
    /// The rule for a frame of the file (counted from 0). Valid until the next call.
    const DisplayRule& ruleFor(const dicom::DicomFile& file, int frameIndex, const dicom::Frame& frame,
                               const WindowInForce& window, Polarity polarity);

    /// Grows whenever the rule changes.
    std::uint64_t revision() const { return revision_; }
    /// Forgets the file.
    void clear();

  private:
    void makeRule(const dicom::DicomFile& file, const dicom::Frame& frame);

    const dicom::DicomFile* file_ = nullptr;
    int frameIndex_ = 0;  ///< the rule is at least this frame's
    std::size_t sampleKind_ = 0;
    int samplesPerPixel_ = 0;
    dicom::GreyTransform grey_;
    WindowInForce window_;
    Polarity polarity_ = Polarity::Normal;
    std::optional<GreyRule> greyRule_;
    DisplayRule rule_;
    std::uint64_t revision_ = 0;
};

}  // namespace cinedisc
