#pragma once

#include "control/pipeline/AxisTable.h"
#include "control/pipeline/RowKernels.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cinedisc {

/// Where a scaled picture is written: rows of 8-bit greys, or of 32-bit pixels 0xFFRRGGBB.
struct PixelTarget {
    enum class Format { Grey8, Rgb32 };
    std::uint8_t* bits = nullptr;
    std::ptrdiff_t bytesPerRow = 0;
    Format format = Format::Rgb32;
};

/// Scales a picture from its rows straight into a target, in one pass: each source row is read once, scaled
/// sideways, and mixed with its neighbours while it is still in the cache. Keeps its working rows between
/// pictures. One thread at a time.
class PictureScaler {
  public:
    explicit PictureScaler(const RowKernels& kernels = RowKernels::best()) : kernels_(kernels) {}

    /// Writes rows.size() rows of columns.size() pixels. Grey8 asks for a source of one channel.
    void draw(const RowSource& source, const AxisTable& columns, const AxisTable& rows,
              const PixelTarget& target);

  private:
    void drawPicked(const RowSource& source, const AxisTable& columns, const AxisTable& rows,
                    const PixelTarget& target);
    void drawMixed(const RowSource& source, const AxisTable& columns, const AxisTable& rows,
                   const PixelTarget& target);
    const std::uint16_t* scaledRow(const RowSource& source, const AxisTable& columns, const AxisTable& rows,
                                   int y);
    void prepare(const RowSource& source, const AxisTable& columns, const AxisTable& rows);
    void pack(std::uint8_t* into, PixelTarget::Format format, int count) const;

    const RowKernels& kernels_;
    int channels_ = 1;
    std::vector<std::uint8_t> source_[3];
    std::vector<std::uint8_t> result_[3];
    std::vector<std::uint16_t> ring_;  ///< the scaled source rows at hand: row y in slot y modulo the taps
    std::size_t ringStride_ = 0;       ///< from channel to channel
    std::vector<int> ringRow_;
    std::vector<const std::uint16_t*> scaled_, ofChannel_;  ///< the rows that make the one at hand
};

}  // namespace cinedisc
