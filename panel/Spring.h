#pragma once

#include "foundation/Clock.h"

namespace noctra {

/// A damped spring let go at `offset` from its rest, with a velocity: x'' + 2 d w x' + w^2 x = 0,
/// solved in closed form. Offsets are in any unit, velocities in that unit per second.
class Spring {
public:
    /// `response`: the period without damping, in seconds, above 0; w = 2 pi / response.
    /// `damping`: the damping fraction d, from 0; 1 comes to rest soonest without overshoot.
    Spring(Seconds response, double damping, double offset, double velocity = 0.0);

    /// The offset from the rest at `time`, from 0 on.
    [[nodiscard]] double value(Seconds time) const;
    [[nodiscard]] double velocity(Seconds time) const;

    /// From `time` on the offset stays within `threshold` for good. It may say so later than it
    /// could: it goes by the envelope of the motion, not by the motion. Never true of a spring
    /// without damping, unless it never leaves the threshold.
    [[nodiscard]] bool hasSettled(Seconds time, double threshold) const;

private:
    /// The two solutions from which every motion is put together, damping included: `even` starts
    /// at 1, `odd` at 0 with slope 1.
    struct Basis {
        double even;
        double odd;
    };
    [[nodiscard]] Basis basisAt(double time) const;

    double frequency_; ///< w, in radians per second
    double damping_;
    double offset_;
    double push_; ///< the factor of the odd solution: velocity + d w offset
};

} // namespace noctra
