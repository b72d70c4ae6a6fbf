#include "discmaker/angiogram/Angiogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace cinedisc::discmaker {
namespace {

Angiogram::Setup smallRun() {
    Angiogram::Setup setup;
    setup.size = 160;
    setup.view = {-30, -20};
    setup.noise = 0;
    return setup;
}

double mean(const std::vector<std::uint16_t>& samples) {
    return std::accumulate(samples.begin(), samples.end(), 0.0) / static_cast<double>(samples.size());
}

/// Pixels that are darker in `frame` than in `before` by more than `steps`.
long darkened(const std::vector<std::uint16_t>& before, const std::vector<std::uint16_t>& frame, int steps) {
    long count = 0;
    for (std::size_t i = 0; i < frame.size(); ++i) count += before[i] > frame[i] + steps;
    return count;
}

TEST(Angiogram, FillsWithContrastAndWashesOut) {
    Angiogram run(smallRun());
    // A heart beat is 12.5 frames: these are at the same moment of it, but for the breath.
    const auto before = run.frame(0), filling = run.frame(13), full = run.frame(38), late = run.frame(150);
    const auto filled = darkened(before, full, 25);
    EXPECT_GT(filled, 160 * 160 / 60);
    EXPECT_LT(darkened(before, filling, 25), filled * 3 / 4);
    EXPECT_LT(darkened(before, late, 25), filled / 10);
    EXPECT_NEAR(mean(before), mean(late), 3) << "the exposure stays";
}

TEST(Angiogram, AnswersTheSameFrameWhateverWasAskedBefore) {
    auto setup = smallRun();
    setup.noise = 2;
    Angiogram one(setup), other(setup);
    one.frame(3);
    const auto frame = one.frame(20);
    EXPECT_EQ(frame, other.frame(20));
    EXPECT_NE(frame, one.frame(21));
}

TEST(Angiogram, UsesTheRangeOfItsBits) {
    auto setup = smallRun();
    const auto eight = Angiogram(setup).frame(30);
    setup.bits = 12;
    const auto twelve = Angiogram(setup).frame(30);
    for (std::size_t i = 0; i < eight.size(); ++i) ASSERT_NEAR(twelve[i] * 255.0 / 4095, eight[i], 0.6);
}

TEST(Projection, TurnsThePatientAsACArmDoes) {
    const Vector3 front{0, -50, 0}, left{50, 0, 0}, head{0, 0, 50};
    const auto seen = [](Projection::View view, Vector3 place) {
        return Projection(view, 512, 200).project(place);
    };
    EXPECT_GT(seen({0, 0}, left).column, 300) << "the patient's left is on the picture's right";
    EXPECT_LT(seen({0, 0}, head).row, 200);
    EXPECT_LT(seen({45, 0}, front).column, 220) << "LAO: the front moves away from the spine, to the left";
    EXPECT_GT(seen({-45, 0}, front).column, 290);
    EXPECT_GT(seen({0, 30}, front).row, 290) << "CRAN: the front moves down";
    EXPECT_GT(seen({0, 0}, front).pixelsPerMm, 0);
    EXPECT_LT(seen({0, 0}, front).pixelsPerMm, seen({0, 0}, front * -1).pixelsPerMm)
        << "near the tube is larger";
}

}  // namespace
}  // namespace cinedisc::discmaker
