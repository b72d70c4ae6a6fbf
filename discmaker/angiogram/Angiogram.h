#pragma once

#include "discmaker/angiogram/Catheter.h"
#include "discmaker/angiogram/Collimator.h"
#include "discmaker/angiogram/ContrastFlow.h"
#include "discmaker/angiogram/Projection.h"
#include "discmaker/angiogram/Thorax.h"
#include "discmaker/angiogram/TubeRenderer.h"
#include "discmaker/angiogram/VesselTree.h"

#include <cstdint>
#include <vector>

namespace cinedisc::discmaker {

/// A simulated coronary angiogram: one injection into the left or right coronary artery, seen from one side.
///
/// Everything is reckoned in the logarithm of the dose, on which tissues add up, with greys of 0 .. 255 that
/// are scaled to the wanted bits at the end. Frames may be asked for in any order, from one thread.
class Angiogram {
  public:
    struct Setup {
        Anatomy anatomy;
        Catheter::Side side = Catheter::Side::Left;
        Catheter::Access access = Catheter::Access::Femoral;
        Projection::View view;
        int size = 512;  ///< rows and columns
        int bits = 8;
        double frameRate = 15;     ///< frames a second
        double heartRate = 72;     ///< beats a minute
        double fieldOfView = 178;  ///< mm on the detector
        ContrastFlow::Injection injection;
        Collimator::Shape shutter = Collimator::Shape::Rectangular;
        Collimator::Margins margins;
        double noise = 1.9;  ///< grey steps of 0 .. 255 at middle grey
        std::uint64_t seed = 1;
    };

    explicit Angiogram(const Setup& setup);

    /// The samples of a frame counted from 0, row after row.
    std::vector<std::uint16_t> frame(int number);

    const Collimator& collimator() const { return collimator_; }
    double pixelSpacing() const { return projection_.pixelSpacing(); }  ///< mm on the detector

  private:
    HeartMotion::Moment momentAt(double time) const;
    void castVessels(Plane& shadow, double time, HeartMotion::Moment moment);
    void castCatheter(Plane& shadow, double time, HeartMotion::Moment moment);
    void addPuff(Plane& shadow, double time, HeartMotion::Moment moment) const;
    void stainMuscle();
    double brightness() const;
    std::vector<TubePoint> cast(const Vessel& vessel, double time, HeartMotion::Moment moment) const;

    Setup setup_;
    VesselTree tree_;
    Projection projection_;
    ContrastFlow flow_;
    Catheter catheter_;
    Collimator collimator_;
    Thorax thorax_;
    TubeRenderer tubes_;
    Plane muscle_;  ///< coarse: where the muscle that these arteries feed lies
    double brightness_;
};

}  // namespace cinedisc::discmaker
