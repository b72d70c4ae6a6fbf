#include "discmaker/angiogram/VesselGrower.h"
#include "discmaker/angiogram/VesselTree.h"

#include <array>

namespace cinedisc::discmaker {

VesselTree rightCoronary(const Anatomy& anatomy) {
    VesselGrower grower(anatomy);
    Random vary(anatomy.seed ^ 0x819);
    const auto mm = [&](double place) { return place + vary.between(-3, 3); };
    const auto turn = [&](double azimuth) { return azimuth + vary.between(-5, 5); };

    // Around the right groove to the crux and on to the back of the left ventricle.
    const std::array groove{HeartPlace{-14, -32, 0.32},         HeartPlace{-15, -44, 0.60},
                            HeartPlace{-9, -52, 0.92},          HeartPlace{-2, -62, 1.08},
                            HeartPlace{mm(3), -82, 1.13},       HeartPlace{mm(4), -104, 1.13},
                            HeartPlace{mm(4), -126, 1.10},      HeartPlace{4, -150, 1.05},
                            HeartPlace{4, -174, 1.02},          HeartPlace{5, -190, 1.02},
                            HeartPlace{mm(12), -203, 1.01},     HeartPlace{mm(28), turn(-210), 1.0},
                            HeartPlace{mm(44), turn(-212), 1.0}};
    const auto rca = grower.trunk(groove, {2.0, 0.6});
    const auto descending = grower.branch(rca, 0.70,
                                          {{13, -173, 1.02},
                                           {mm(28), turn(-172), 1.02},
                                           {mm(46), turn(-170), 1.01},
                                           {mm(62), turn(-172), 1.0},
                                           {76, -174, 1.0}},
                                          {1.2, 0.34});
    const auto conus =
        grower.branch(rca, 0.10, {{-12, -40, 1.02}, {-4, -26, 1.08}, {6, -18, 1.06}}, {0.6, 0.2});
    const auto sinusNode =
        grower.branch(rca, 0.13, {{-20, -66, 0.85}, {-30, -84, 0.75}, {-36, -110, 0.7}}, {0.55, 0.18});
    const auto ventricular = grower.branch(
        rca, 0.27, {{mm(14), -76, 1.10}, {mm(26), turn(-68), 1.08}, {mm(38), turn(-60), 1.05}}, {0.65, 0.2});
    const auto acute = grower.branch(rca, 0.43,
                                     {{mm(14), -112, 1.12},
                                      {mm(30), turn(-110), 1.09},
                                      {mm(48), turn(-106), 1.05},
                                      {mm(64), turn(-102), 1.0}},
                                     {0.95, 0.3});
    const auto lower = grower.branch(
        rca, 0.55, {{mm(16), -138, 1.06}, {mm(30), turn(-140), 1.03}, {42, turn(-142), 1.0}}, {0.55, 0.2});
    const auto backWall = grower.branch(
        rca, 0.79, {{mm(18), -192, 1.02}, {mm(34), turn(-193), 1.0}, {50, turn(-192), 1.0}}, {0.9, 0.28});

    for (int i = 0; i < 5; ++i) {
        const double height = 16 + 10 * i;
        const auto septal = grower.branch(
            descending, 0.2 + 0.13 * i,
            {{height + 2, -172, 0.85}, {height + 5, turn(-168), 0.64}, {height + 8, turn(-160), 0.48}},
            {0.36, 0.13});
        grower.twigs(septal, 8, 6);
    }
    grower.narrow(rca, Lesion::Site::Right);
    grower.narrow(descending, Lesion::Site::Descending);
    for (auto vessel : {descending, acute, backWall}) grower.twigs(vessel, 7, 17);
    for (auto vessel : {conus, sinusNode, ventricular, lower}) grower.twigs(vessel, 7, 12);
    grower.twigs(rca, 12, 14);
    return grower.take();
}

}  // namespace cinedisc::discmaker
