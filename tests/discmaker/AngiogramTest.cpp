#include "discmaker/angiogram/Angiogram.h"

#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

TEST(Angiogram, FillsWithContrastAndWashesOut) {
    Angiogram::Setup setup;
    setup.size = 160, setup.view = {-30, -20}, setup.noise = 0;
    Angiogram run(setup);
    // A heart beat is 12.5 frames: these are at the same moment of it, but for the breath.
    const auto before = run.frame(0), filling = run.frame(13), full = run.frame(38), late = run.frame(150);
    const auto darkened = [&](const std::vector<std::uint16_t>& frame) {
        long count = 0;
        for (std::size_t i = 0; i < frame.size(); ++i) count += before[i] > frame[i] + 25;
        return count;
    };
    EXPECT_GT(darkened(full), 160 * 160 / 60);
    EXPECT_LT(darkened(filling), darkened(full) * 3 / 4);
    EXPECT_LT(darkened(late), darkened(full) / 10);

    setup.bits = 12;
    const auto twelve = Angiogram(setup).frame(38);
    for (std::size_t i = 0; i < full.size(); ++i) ASSERT_NEAR(twelve[i] * 255.0 / 4095, full[i], 0.6);
}

TEST(Projection, TurnsThePatientAsACArmDoes) {
    const Vector3 front{0, -50, 0}, left{50, 0, 0}, head{0, 0, 50};
    const auto seen = [](Projection::View view, Vector3 place) {
        return Projection(view, 512, 200).project(place);
    };
    EXPECT_GT(seen({0, 0}, left).column, 300) << "the patient's left is on the picture's right";
    EXPECT_LT(seen({0, 0}, head).row, 200);
    EXPECT_LT(seen({45, 0}, front).column, 220) << "LAO: the front moves away from the spine, to the left";
    EXPECT_GT(seen({0, 30}, front).row, 290) << "CRAN: the front moves down";
    EXPECT_LT(seen({0, 0}, front).pixelsPerMm, seen({0, 0}, front * -1).pixelsPerMm)
        << "near the tube is larger";
}

}  // namespace
}  // namespace cinedisc::discmaker
