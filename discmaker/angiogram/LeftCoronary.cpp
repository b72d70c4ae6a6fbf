#include "discmaker/angiogram/VesselGrower.h"
#include "discmaker/angiogram/VesselTree.h"

#include <array>

namespace cinedisc::discmaker {

// Places are height (mm), azimuth (degrees) and depth on the resting heart. Courses are those of a textbook
// heart, shifted a little from patient to patient.
VesselTree leftCoronary(const Anatomy& anatomy) {
    VesselGrower grower(anatomy);
    Random vary(anatomy.seed ^ 0x1EF7);
    const auto mm = [&](double place) { return place + vary.between(-3, 3); };
    const auto turn = [&](double azimuth) { return azimuth + vary.between(-5, 5); };

    // Left main and anterior descending, around the apex.
    const std::array anterior{HeartPlace{-15, 12, 0.30},
                              HeartPlace{-13, 26, 0.52},
                              HeartPlace{-8, 27, 0.80},
                              HeartPlace{1, 17, 0.98},
                              HeartPlace{13, 5, 1.02},
                              HeartPlace{mm(30), turn(-3), 1.02},
                              HeartPlace{mm(50), turn(-4), 1.02},
                              HeartPlace{mm(69), turn(-6), 1.01},
                              HeartPlace{84, turn(-10), 1.01},
                              HeartPlace{93.5, -20, 1.0},
                              HeartPlace{94, -150, 1.0},
                              HeartPlace{86, -175, 1.0}};
    const auto lad = grower.trunk(anterior, {2.15, 0.5});
    const auto circumflex = grower.branch(lad, 0.125,
                                          {{-3, 46, 0.95},
                                           {2, 62, 1.02},
                                           {mm(5), 82, 1.03},
                                           {mm(6), 105, 1.03},
                                           {6, 128, 1.02},
                                           {mm(10), 146, 1.01},
                                           {mm(24), turn(156), 1.0}},
                                          {1.75, 0.6});
    const auto diagonal1 = grower.branch(
        lad, 0.30,
        {{mm(24), 22, 1.02}, {mm(38), turn(38), 1.02}, {mm(56), turn(48), 1.0}, {70, turn(52), 1.0}},
        {1.1, 0.32});
    const auto diagonal2 = grower.branch(
        lad, 0.46, {{mm(45), 12, 1.02}, {mm(58), turn(24), 1.01}, {mm(74), turn(31), 1.0}}, {0.9, 0.28});
    const auto diagonal3 =
        grower.branch(lad, 0.62, {{mm(64), 8, 1.0}, {mm(76), turn(17), 1.0}}, {0.55, 0.18});
    const auto marginal1 = grower.branch(circumflex, 0.26,
                                         {{mm(14), 70, 1.02},
                                          {mm(30), turn(78), 1.02},
                                          {mm(48), turn(82), 1.01},
                                          {mm(68), turn(80), 1.0},
                                          {80, turn(76), 1.0}},
                                         {1.3, 0.36});
    const auto marginal2 = grower.branch(
        circumflex, 0.52,
        {{mm(16), 108, 1.02}, {mm(32), turn(113), 1.01}, {mm(52), turn(115), 1.0}, {66, turn(112), 1.0}},
        {1.05, 0.3});
    const auto marginal3 = grower.branch(
        circumflex, 0.74, {{mm(20), 138, 1.01}, {mm(38), turn(138), 1.0}, {50, turn(134), 1.0}}, {0.7, 0.2});
    const auto atrial =
        grower.branch(circumflex, 0.2, {{-10, 60, 1.02}, {-20, 84, 1.0}, {-25, 112, 0.95}}, {0.5, 0.18});

    // Septal branches dive from the front groove into the wall between the chambers.
    const std::array<double, 6> septals{0.245, 0.31, 0.385, 0.46, 0.54, 0.62};
    for (std::size_t i = 0; i < septals.size(); ++i) {
        const double height = 15 + 11 * static_cast<double>(i), reach = i < 3 ? 1.0 : 0.75;
        const auto septal = grower.branch(lad, septals[i],
                                          {{height + 4, -9, 0.86},
                                           {height + 10, turn(-15), 0.86 - 0.26 * reach},
                                           {height + 17, turn(-24), 0.86 - 0.50 * reach},
                                           {height + 23, turn(-38), 0.86 - 0.66 * reach}},
                                          {i == 0 ? 0.68 : 0.5, 0.18});
        grower.twigs(septal, 9, 7);
    }
    grower.narrow(lad, Lesion::Site::Anterior);
    grower.narrow(circumflex, Lesion::Site::Circumflex);
    grower.narrow(diagonal1, Lesion::Site::Diagonal);
    grower.narrow(marginal1, Lesion::Site::Marginal);
    for (auto vessel : {diagonal1, diagonal2, marginal1, marginal2}) grower.twigs(vessel, 8, 19);
    for (auto vessel : {diagonal3, marginal3, atrial}) grower.twigs(vessel, 7, 12);
    for (auto vessel : {lad, circumflex}) grower.twigs(vessel, 9, 17);
    return grower.take();
}

}  // namespace cinedisc::discmaker
