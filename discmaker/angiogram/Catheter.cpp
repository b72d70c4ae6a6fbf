#include "discmaker/angiogram/Catheter.h"

#include <algorithm>

namespace cinedisc::discmaker {

std::vector<Vector3> Catheter::course(const Vessel& trunk, HeartMotion::Moment moment) const {
    const auto& ostium = trunk.samples.front().place;
    const auto& inside = trunk.samples[std::min<std::size_t>(5, trunk.samples.size() - 1)].place;
    const Vector3 rest = HeartMotion::position(ostium, {0.35, 0.5 * moment.breath});
    const Vector3 tip = HeartMotion::position(ostium, moment);
    std::vector<Vector3> knots{HeartMotion::position(inside, moment), tip};
    // The further from the tip, the less the beat pulls.
    double held = 0.3;
    const auto at = [&](double x, double y, double z) {
        knots.push_back(tip * (1 - held) + rest * held + Vector3{x, y, z});
        held = std::min(1.0, held + 0.35);
    };
    if (side_ == Side::Left) {
        at(-9, 1, 3), at(-17, 3, 13), at(-20, 2, 32), at(-17, -3, 55), at(-9, 0, 76);
    } else {
        at(4, 7, 0), at(8, 13, 8), at(7, 13, 27), at(3, 8, 52), at(4, 6, 74);
    }
    if (access_ == Access::Femoral) {
        at(12, 14, 96), at(42, 36, 100);
        for (double z : {90.0, 50.0, 10.0, -30.0, -80.0, -140.0}) knots.push_back({17 + z * 0.03, 68, z});
    } else {
        at(-18, 4, 98), at(-48, 10, 112);
    }

    std::vector<Vector3> line;
    for (std::size_t i = 0; i + 1 < knots.size(); ++i) {
        const auto before = knots[i > 0 ? i - 1 : 0], after = knots[std::min(i + 2, knots.size() - 1)];
        for (int step = 0; step < 10; ++step)
            line.push_back(spline(before, knots[i], knots[i + 1], after, step / 10.0));
    }
    return line;
}

}  // namespace cinedisc::discmaker
