#pragma once

#include "discmaker/angiogram/HeartMotion.h"

#include <cstdint>
#include <vector>

namespace cinedisc::discmaker {

/// A point on a vessel's centre line.
struct VesselSample {
    HeartPlace place;
    double radius = 1;    ///< mm
    double distance = 0;  ///< mm of vessel between the ostium and here
};

/// One vessel from its origin to its end, a sample about every mm.
struct Vessel {
    std::vector<VesselSample> samples;
    double originRadius = 0;  ///< of the vessel that it leaves, mm; of the ostium's funnel for the first
};

/// A narrowing of a main vessel.
struct Lesion {
    enum class Site { Anterior, Diagonal, Circumflex, Marginal, Right, Descending };
    Site site = Site::Anterior;
    double at = 0.4;         ///< part of the vessel's length
    double narrowing = 0.6;  ///< part of the diameter that is lost, 0 .. 1
    double length = 6;       ///< mm
};

/// What tells one patient's coronary arteries from another's.
struct Anatomy {
    std::uint64_t seed = 1;
    double calibre = 1;  ///< 1 for arteries of common width
    std::vector<Lesion> lesions;
};

/// The vessels of one patient on the resting heart, the one that begins at the ostium first.
using VesselTree = std::vector<Vessel>;
VesselTree leftCoronary(const Anatomy& anatomy);
VesselTree rightCoronary(const Anatomy& anatomy);

}  // namespace cinedisc::discmaker
