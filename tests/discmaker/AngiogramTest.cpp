#include "discmaker/angiogram/Angiogram.h"

#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

/// Contrast comes, darkens the picture and goes. The figures change with anything that a picture is made of:
/// after a change that is meant they are to be read off again, when the pictures have been looked at.
TEST(Angiogram, IsThePictureThatItAlwaysWas) {
    Angiogram::Setup left;
    left.anatomy.lesions = {{Lesion::Site::Anterior, 0.3, 0.68, 8}, {Lesion::Site::Right, 0.4, 0.45, 9}};
    left.view = {-30, -20}, left.size = 300, left.bits = 12, left.margins = {0.07, 0.11};
    auto right = left;
    right.side = Catheter::Side::Right, right.view = {28, 26}, right.bits = 16;
    right.access = Catheter::Access::Radial, right.shutter = Collimator::Shape::Circular;
    for (const auto& [setup, number, grey] : {std::tuple{&left, 0, 71.0188},
                                              {&left, 16, 70.2683},
                                              {&left, 38, 67.9324},
                                              {&left, 150, 70.8621},
                                              {&right, 20, 61.4097},
                                              {&right, 45, 59.0219}}) {
        const auto samples = Angiogram(*setup).frame(number);
        double sum = 0;
        for (int i = 0; i < 300 * 300; ++i)
            sum += samples[std::size_t(i)] * (1 + i / 300 / 300.0 + i % 300 / 600.0);
        EXPECT_NEAR(100 * sum / (300 * 300) / (1 << setup->bits), grey, 1e-4) << number;
    }
}

}  // namespace
}  // namespace cinedisc::discmaker
