#pragma once

#include "discmaker/angiogram/Plane.h"
#include "discmaker/angiogram/Projection.h"

#include <array>
#include <span>

namespace cinedisc::discmaker {

/// An ellipsoid of even tissue.
struct SoftBody {
    Vector3 center;
    std::array<Vector3, 3> axes;  ///< half axes, at right angles to each other, mm
    double density = 0;           ///< grey steps that a ray loses for each mm of its way
};

/// What the rays through each pixel of a picture lose in the bodies together. The plane may be coarser than
/// the projection's picture; it covers the same field.
Plane castShadows(std::span<const SoftBody> bodies, const Projection& projection, int size);

}  // namespace cinedisc::discmaker
