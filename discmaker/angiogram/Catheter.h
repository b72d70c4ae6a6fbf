#pragma once

#include "discmaker/angiogram/VesselTree.h"

#include <vector>

namespace cinedisc::discmaker {

/// A diagnostic catheter of 2 mm with its tip in the ostium.
class Catheter {
  public:
    enum class Access { Femoral, Radial };
    enum class Side { Left, Right };

    static constexpr double radius = 1.0;  ///< mm

    Catheter(Side side, Access access) : side_(side), access_(access) {}

    /// The centre line from the tip on, in the patient; the tip moves with the ostium, the shaft hardly.
    std::vector<Vector3> course(const Vessel& trunk, HeartMotion::Moment moment) const;

  private:
    Side side_;
    Access access_;
};

}  // namespace cinedisc::discmaker
