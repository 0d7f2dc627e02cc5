#pragma once

#include <cmath>
#include <numbers>

namespace noctra {

/// x'' + 2 d w x' + w^2 x = 0 with d up to 1, written down independently of the program's own.
struct DampedOscillator {
    double response;
    double damping;

    /// The offset from the rest at `time`, where it started at `start` with `velocity`.
    [[nodiscard]] double offset(double time, double start, double velocity) const {
        const double w = 2.0 * std::numbers::pi / response;
        const double push = velocity + damping * w * start;
        if (damping == 1.0)
            return std::exp(-w * time) * (start + push * time);
        const double swing = w * std::sqrt(1.0 - damping * damping);
        return std::exp(-damping * w * time) *
               (start * std::cos(swing * time) + push / swing * std::sin(swing * time));
    }
    [[nodiscard]] double speed(double time, double start, double velocity) const {
        const double step = 1e-6;
        return (offset(time + step, start, velocity) - offset(time - step, start, velocity)) /
               (2.0 * step);
    }
};

} // namespace noctra
