#pragma once

namespace cinedisc::discmaker {

/// How much contrast medium the blood holds along the vessels while it is injected, carried on and washed
/// out.
class ContrastFlow {
  public:
    struct Injection {
        double start = 0.5;     ///< s after the first frame
        double duration = 2.2;  ///< s
        double speed = 130;     ///< mm/s of the blood in the main vessels
    };

    explicit ContrastFlow(Injection injection) : injection_(injection) {}

    /// 0 none .. 1 undiluted, `distance` mm behind the ostium, `time` s after the first frame, `beat` length
    /// of a heart beat in s.
    double concentration(double distance, double time, double beat) const;
    /// Contrast on its way through the catheter, and what flows back into the aorta.
    double inCatheter(double time) const;
    double inAorta(double time) const;
    /// The pale stain of the muscle after the vessels have filled.
    double inMuscle(double time) const;

  private:
    Injection injection_;
};

}  // namespace cinedisc::discmaker
