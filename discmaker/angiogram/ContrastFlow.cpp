#include "discmaker/angiogram/ContrastFlow.h"

#include "discmaker/angiogram/Vector3.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cinedisc::discmaker {

namespace {

double rise(double time, double duration) { return smoothStep(0, duration, time); }

}  // namespace

double ContrastFlow::concentration(double distance, double time, double beat) const {
    // Blood runs mostly while the heart rests: its front moves in steps.
    const double phase = time / beat * 2 * std::numbers::pi;
    const double pulse = 0.035 * beat * std::sin(phase);
    const double atOstium = time + pulse - distance / injection_.speed - injection_.start;
    if (atOstium <= 0) return 0;
    // The front blurs on the way, and fresh blood streams in beside the contrast with each beat.
    const double front = rise(atOstium, 0.28 + distance * 0.002);
    const double since = atOstium - injection_.duration;
    const double rest = since <= 0 ? 1.0 : std::exp(-since / (0.42 + distance * 0.0012));
    const double dilution = 1 - 0.10 * (0.5 + 0.5 * std::sin((atOstium / beat) * 2 * std::numbers::pi));
    const double spread = 1 - 0.0009 * distance;
    return front * rest * dilution * spread;
}

double ContrastFlow::inCatheter(double time) const {
    const double since = time - injection_.start + 0.25;
    return rise(since, 0.15) * (1 - 0.8 * rise(since - injection_.duration - 0.25, 0.3));
}

double ContrastFlow::inAorta(double time) const {
    const double since = time - injection_.start - 0.15;
    if (since <= 0) return 0;
    return rise(since, 0.5) *
           (since < injection_.duration ? 1.0 : std::exp(-(since - injection_.duration) / 0.35));
}

double ContrastFlow::inMuscle(double time) const {
    const double since = time - injection_.start - 1.0;
    return rise(since, 2.0) * std::exp(-std::max(since - 2.6, 0.0) / 2.5);
}

}  // namespace cinedisc::discmaker
