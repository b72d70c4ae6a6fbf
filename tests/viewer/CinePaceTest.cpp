#include "viewer/CinePace.h"

#include <gtest/gtest.h>

#include <random>

namespace cinedisc {
namespace {

TEST(CinePaceTest, KeepsARateThatMillisecondsDoNotDivideAndLetsNoTicksBurst) {
    std::mt19937 random(7);
    for (const double rate : {7.5, 12.5, 15.0, 24.0, 25.0, 29.97, 30.0, 60.0}) {
        CinePace pace;
        std::uniform_real_distribution<double> late(0, 5);
        double now = 1000;
        const double start = now;
        const int ticks = 600;
        for (int i = 0; i < ticks; ++i) now += pace.next(now, rate) + late(random);
        EXPECT_NEAR(ticks * 1000 / (now - start), rate, rate / 100) << rate;
        // A tick that is late by far is not made good.
        EXPECT_NEAR(pace.next(now + 10000, rate), 1000 / rate, 1) << rate;
    }
}

TEST(CinePaceTest, MetersTheFramesOfTheLastTwoSeconds) {
    RateMeter meter;
    for (int i = 0; i <= 100; ++i) meter.drawn(i * 100.0);
    for (int i = 1; i <= 60; ++i) meter.drawn(10000 + i * 50.0);
    EXPECT_NEAR(meter.rate(13000), 20, 0.01);
    EXPECT_EQ(meter.rate(15001), 0);
}

}  // namespace
}  // namespace cinedisc
