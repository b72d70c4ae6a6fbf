#pragma once

#include "control/pipeline/CoverPlane.h"
#include "control/pipeline/GreyTable.h"
#include "control/pipeline/PaletteTable.h"
#include "control/pipeline/RowKernels.h"
#include "dicom/Frame.h"

#include <memory>

namespace cinedisc {

/// How the samples of a frame are displayed. What a frame needs of it depends on its kind: a table for
/// samples of at most 16 bits, the rule itself for wider ones, the palette, or the polarity alone for colour.
struct DisplayRule {
    std::shared_ptr<const GreyTable> table;
    std::shared_ptr<const PaletteTable> palette;  ///< set: indices, not greys
    const GreyRule* rule = nullptr;
    Polarity polarity = Polarity::Normal;  ///< of colour; greys have it in their table
};

/// The rows of a decoded frame under a display rule and cover. Refers to what it was made from.
class FrameRows : public RowSource {
  public:
    FrameRows(const dicom::Frame& frame, const DisplayRule& rule, const CoverPlane* cover,
              const RowKernels& kernels = RowKernels::best());

    int rows() const override { return frame_.rows; }
    int columns() const override { return frame_.columns; }
    int channels() const override { return channels_; }
    void read(int y, int from, int to, const Channels& into) const override;

  private:
    void readGrey(std::size_t offset, int count, std::uint8_t* into) const;
    void readPalette(std::size_t offset, int count, const Channels& into) const;
    void readColor(std::size_t offset, int count, const Channels& into) const;

    template <typename Sample>
    void readTabled(const Sample* samples, std::uint8_t* into, int count) const;

    const RowKernels& kernels_;
    const dicom::Frame& frame_;
    const DisplayRule& rule_;
    const CoverPlane* cover_;
    int channels_;
};

}  // namespace cinedisc
