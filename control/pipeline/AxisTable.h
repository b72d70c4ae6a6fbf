#pragma once

#include "control/pipeline/PairBlocks.h"

#include <cstdint>
#include <vector>

namespace cinedisc {

enum class Smoothing { Nearest, Smooth };

/// One axis of a scaling: which source positions, with which weights, make each visible position of the
/// scaled picture. Worked out once per geometry, used for every frame.
///
/// Nearest takes one source position. Smooth is linear interpolation between two when enlarging, and a
/// triangle over all source positions that fall on the result when reducing, so that thin lines neither
/// flicker nor vanish.
class AxisTable {
  public:
    /// The whole axis of `sourceSize` positions becomes `scaledSize`; wanted are the scaled positions
    /// [visibleFrom, visibleTo), a part of 0 ... scaledSize.
    AxisTable(int sourceSize, int scaledSize, int visibleFrom, int visibleTo, Smoothing smoothing);

    int size() const { return static_cast<int>(first_.size()); }
    /// Source positions per result; the same for all.
    int taps() const { return taps_; }
    /// The source positions in use: [sourceFrom, sourceTo).
    int sourceFrom() const { return sourceFrom_; }
    int sourceTo() const { return sourceTo_; }
    /// One source position after the other without a gap: nothing is scaled.
    bool isCopy() const { return copy_; }

    /// First source position of result i, counted from sourceFrom().
    const std::int32_t* first() const { return first_.data(); }
    /// Weights of result i from i * taps() on. They add up to fullWeight.
    const std::uint16_t* weights() const { return weights_.data(); }
    static constexpr int fullWeight = 1 << 15;
    /// The same where every result is made of two neighbours; empty otherwise.
    const PairBlocks& pairs() const { return pairs_; }

  private:
    void nearest(double step, int visibleFrom, int sourceSize);
    void triangle(double step, int visibleFrom, int sourceSize);

    std::vector<std::int32_t> first_;
    std::vector<std::uint16_t> weights_;
    PairBlocks pairs_;
    int taps_ = 1;
    int sourceFrom_ = 0;
    int sourceTo_ = 0;
    bool copy_ = false;
};

}  // namespace cinedisc
