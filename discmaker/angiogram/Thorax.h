#pragma once

#include "discmaker/angiogram/HeartMotion.h"
#include "discmaker/angiogram/Plane.h"
#include "discmaker/angiogram/Projection.h"

#include <cstdint>

namespace cinedisc::discmaker {

/// Everything in the picture but vessels and catheter: ribs, spine, the heart's shadow, the diaphragm, the
/// lungs.
class Thorax {
  public:
    Thorax(const Projection& projection, std::uint64_t seed);

    /// What the rays lose at a moment, in grey steps, one value a pixel. `stain` is lost besides; it may be
    /// coarser.
    Plane shadows(HeartMotion::Moment moment, const Plane& stain) const;

  private:
    void castBones();
    void weaveLungs(std::uint64_t seed);
    void addLungs(Plane& coarse, double breath) const;

    Projection projection_;
    int coarseSize_;
    Plane bones_;
    Plane lungs_;  ///< coarse, taller than the picture so that it can move with the breath
};

}  // namespace cinedisc::discmaker
