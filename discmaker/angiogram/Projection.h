#pragma once

#include "discmaker/angiogram/Vector3.h"

namespace cinedisc::discmaker {

/// The C-arm's view: where the detector stands and how the patient is cast upon it (PS3.3 C.8.7.5).
class Projection {
  public:
    struct View {
        double primaryAngle = 0;    ///< degrees, LAO positive, RAO negative
        double secondaryAngle = 0;  ///< degrees, CRAN positive, CAUD negative
    };
    /// A point on the picture, in pixels, and what one mm at its depth measures there.
    struct Point {
        double column = 0, row = 0;
        double pixelsPerMm = 1;
    };

    static constexpr double sourceToDetector = 1080;  ///< mm
    static constexpr double sourceToPatient = 765;    ///< mm

    /// `size`: rows and columns of the picture; `fieldOfView`: side of the detector's active part, mm.
    Projection(View view, int size, double fieldOfView);

    Point project(Vector3 place) const;
    /// Moves the table so that `place` is cast upon the given point of the picture (0 .. 1 from left and
    /// top).
    void aimAt(Vector3 place, double across, double down);

    Vector3 source() const { return toDetector_ * -sourceToPatient; }
    Vector3 beam() const { return toDetector_; }
    /// Direction of the ray from the source through a pixel, of length 1.
    Vector3 ray(double column, double row) const;
    double pixelSpacing() const { return pixelSpacing_; }  ///< mm on the detector
    int size() const { return size_; }

  private:
    int size_;
    double pixelSpacing_;
    double centerColumn_, centerRow_;
    Vector3 toDetector_, right_, down_;
};

}  // namespace cinedisc::discmaker
