#pragma once

#include "control/pipeline/FrameRows.h"
#include "dicom/CoarseFrame.h"

#include <array>
#include <cstdint>
#include <vector>

namespace cinedisc {

/// The rows of a picture of which only a coarse one is there yet, at the size of the whole one: displayed
/// greys or colours are interpolated between its samples, the cover lies on top as finely as it is. So
/// nothing moves when the exact picture takes its place. Refers to what it was made from.
class CoarseRows : public RowSource {
  public:
    CoarseRows(const dicom::CoarseFrame& coarse, int rows, int columns, const DisplayRule& rule,
               const CoverPlane* cover, const RowKernels& kernels = RowKernels::best());

    int rows() const override { return rows_; }
    int columns() const override { return columns_; }
    int channels() const override { return samples_.channels(); }
    void read(int y, int from, int to, const Channels& into) const override;

  private:
    /// A coarse row, widened; greys times 256.
    struct Line {
        int row = -1, from = 0, to = 0;
        std::array<std::vector<std::uint16_t>, 3> channels;
    };
    const Line& line(int row, int from, int to) const;
    void widen(const std::uint8_t* greys, int count, int from, int to, std::uint16_t* into) const;

    FrameRows samples_;
    const RowKernels& kernels_;
    const CoverPlane* cover_;
    int rows_, columns_, halvings_;
    mutable std::array<Line, 2> lines_;
    mutable std::array<std::vector<std::uint8_t>, 3> read_;
};

}  // namespace cinedisc
