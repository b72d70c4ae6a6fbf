#pragma once

#include "discmaker/angiogram/Plane.h"

namespace cinedisc::discmaker {

/// The part of the picture that X-rays reach. Everything outside is black.
class Collimator {
  public:
    enum class Shape { Rectangular, Circular };
    struct Opening {
        Shape shape = Shape::Rectangular;
        int left = 1, right = 1, upper = 1, lower = 1;  ///< first and last open columns and rows, from 1
    };

    /// `margins`: parts of the picture's side that are covered at the left and right, and at the top and
    /// bottom. A circle fills what is left open.
    struct Margins {
        double across = 0.035, down = 0.045;
    };
    Collimator(Shape shape, Margins margins, int size);

    const Opening& opening() const { return opening_; }
    int centerColumn() const { return (opening_.left + opening_.right) / 2; }  ///< of the circle, from 1
    int centerRow() const { return (opening_.upper + opening_.lower) / 2; }
    int radius() const { return (opening_.right - opening_.left) / 2; }

    /// Covers what is outside, over a soft edge of about two pixels.
    void cover(Plane& plane) const;

  private:
    Opening opening_;
};

}  // namespace cinedisc::discmaker
