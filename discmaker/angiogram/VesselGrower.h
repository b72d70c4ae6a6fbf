#pragma once

#include "discmaker/angiogram/Random.h"
#include "discmaker/angiogram/VesselTree.h"

#include <cstddef>
#include <span>
#include <vector>

namespace cinedisc::discmaker {

/// Grows a vessel tree: main vessels along given places, side branches by chance.
class VesselGrower {
  public:
    struct Calibre {
        double start, end;  ///< radius in mm
    };

    explicit VesselGrower(const Anatomy& anatomy) : anatomy_(anatomy), random_(anatomy.seed) {}

    /// The vessel that begins at the ostium. Returns its number.
    std::size_t trunk(std::span<const HeartPlace> course, Calibre calibre);
    /// A vessel that leaves `parent` after a part (0 .. 1) of its length and then follows `course`.
    std::size_t branch(std::size_t parent, double part, std::vector<HeartPlace> course, Calibre calibre);
    /// Small branches along a vessel, `spacing` mm apart on average, left and right in turn.
    void twigs(std::size_t parent, double spacing, double longest);
    void narrow(std::size_t vessel, Lesion::Site site);

    std::vector<Vessel> take() { return std::move(vessels_); }

  private:
    std::size_t grow(std::span<const HeartPlace> course, Calibre calibre, double startDistance,
                     double originRadius);
    std::vector<HeartPlace> twigCourse(const Vessel& parent, std::size_t at, double side, double reach);

    const Anatomy& anatomy_;
    Random random_;
    std::vector<Vessel> vessels_;
};

}  // namespace cinedisc::discmaker
