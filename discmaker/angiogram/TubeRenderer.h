#pragma once

#include "discmaker/angiogram/Plane.h"

#include <span>

namespace cinedisc::discmaker {

/// A point on the centre line of a tube, as it is cast upon the picture.
struct TubePoint {
    float column = 0, row = 0;
    float radius = 1;   ///< pixels
    float density = 0;  ///< what a ray loses for each pixel of its way through the tube
};

/// Casts tubes upon a plane: each pixel gets what a ray loses on its way through the tube, which is most in
/// the middle and nothing at the edge. A tube that bends upon itself is not counted twice; different tubes
/// add up.
class TubeRenderer {
  public:
    enum class Filling { Solid, Hollow };

    explicit TubeRenderer(int size) : scratch_(size, size) {}

    void add(Plane& plane, std::span<const TubePoint> tube, Filling filling = Filling::Solid);

  private:
    struct Box {
        int left, right, top, bottom;  ///< first and one past the last
    };
    Box reach(const TubePoint& a, const TubePoint& b) const;
    void drawSegment(const TubePoint& a, const TubePoint& b, Filling filling);

    Plane scratch_;  ///< all zero between calls
};

}  // namespace cinedisc::discmaker
