#pragma once

#include <cmath>

namespace noctra {

/// A timing curve: the cubic Bezier from (0, 0) to (1, 1) with two control points, whose x are
/// within 0..1.
struct CubicBezier {
    double x1;
    double y1;
    double x2;
    double y2;

    friend constexpr bool operator==(const CubicBezier&, const CubicBezier&) = default;

    /// The share of the way that is done after the share `time` of the duration. `time` is clamped
    /// to 0..1; the result is exact to 1e-10.
    [[nodiscard]] double operator()(double time) const {
        if (!(time > 0.0))
            return 0.0;
        if (time >= 1.0)
            return 1.0;
        // Newton's steps, and a bisection wherever one of them would leave the bracket.
        double low = 0.0;
        double high = 1.0;
        double s = time;
        for (int step = 0; step < 64; ++step) {
            const double error = coordinate(s, x1, x2) - time;
            if (std::abs(error) < 1e-12)
                break;
            (error > 0.0 ? high : low) = s;
            const double next = s - error / slope(s, x1, x2);
            s = next > low && next < high ? next : (low + high) / 2.0;
        }
        return coordinate(s, y1, y2);
    }

private:
    static double coordinate(double s, double first, double second) {
        const double rest = 1.0 - s;
        return 3.0 * rest * rest * s * first + 3.0 * rest * s * s * second + s * s * s;
    }
    static double slope(double s, double first, double second) {
        const double rest = 1.0 - s;
        return 3.0 * rest * rest * first + 6.0 * rest * s * (second - first) +
               3.0 * s * s * (1.0 - second);
    }
};

namespace timing {

inline constexpr CubicBezier easeOut{0.0, 0.0, 0.58, 1.0};
inline constexpr CubicBezier easeInOut{0.42, 0.0, 0.58, 1.0};

} // namespace timing

} // namespace noctra
