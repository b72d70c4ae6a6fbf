#pragma once

#include "discmaker/angiogram/Vector3.h"

namespace cinedisc::discmaker {

/// A place on the resting heart, told by the heart's own long axis.
struct HeartPlace {
    double height = 0;  ///< mm from the valve plane towards the apex, negative above the valves
    double azimuth =
        0;  ///< degrees around the axis: 0 front groove, 90 left side, 180 lower groove, -90 right side
    double depth = 1;  ///< distance from the axis as a part of the outer surface's

    friend HeartPlace operator+(HeartPlace a, HeartPlace b) {
        return {a.height + b.height, a.azimuth + b.azimuth, a.depth + b.depth};
    }
    friend HeartPlace operator*(HeartPlace a, double factor) {
        return {a.height * factor, a.azimuth * factor, a.depth * factor};
    }
    friend HeartPlace operator-(HeartPlace a, HeartPlace b) { return a + b * -1; }
};

/// The beating, breathing heart: where its places lie in the patient at a moment. Its middle rests near the
/// isocentre.
class HeartMotion {
  public:
    static constexpr double axisLength = 96;  ///< mm, valve plane to apex, at rest
    static constexpr double baseRadius = 41;  ///< mm, outer surface at the valve plane, at rest

    struct Moment {
        double contraction = 0;  ///< 0 relaxed .. 1 fully contracted
        double breath = 0;       ///< mm that the diaphragm stands below its resting place
    };

    /// Contraction over one beat, `phase` 0 .. 1 from the start of systole.
    static double contraction(double phase);
    /// Where the resting heart's place is at a moment.
    static Vector3 position(HeartPlace place, Moment moment);
    /// Radius of the resting outer surface, mm.
    static double surfaceRadius(double height);

    static Vector3 axis();      ///< from the valve plane to the apex
    static Vector3 forward();   ///< towards azimuth 0
    static Vector3 leftward();  ///< towards azimuth 90
};

}  // namespace cinedisc::discmaker
