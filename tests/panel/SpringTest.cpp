#include <cmath>
#include <numbers>
#include <ostream>

#include <gtest/gtest.h>

#include "panel/Spring.h"

namespace noctra {

namespace {

struct Motion {
    double response, damping, offset, velocity;

    friend std::ostream& operator<<(std::ostream& out, const Motion& m) {
        return out << m.response << " s, damping " << m.damping << ", from " << m.offset << " at "
                   << m.velocity;
    }
};

/// The same motion by small steps of the classical Runge-Kutta method.
struct Integrated {
    const double w2, c;
    double x, v;

    explicit Integrated(const Motion& m)
        : w2(std::pow(2 * std::numbers::pi / m.response, 2)),
          c(2 * m.damping * 2 * std::numbers::pi / m.response), x(m.offset), v(m.velocity) {}

    void step(double h) {
        const auto pull = [this](double x, double v) {
            return -w2 * x - c * v;
        };
        const double v1 = v, a1 = pull(x, v);
        const double v2 = v + h / 2 * a1, a2 = pull(x + h / 2 * v1, v2);
        const double v3 = v + h / 2 * a2, a3 = pull(x + h / 2 * v2, v3);
        const double v4 = v + h * a3, a4 = pull(x + h * v3, v4);
        x += h / 6 * (v1 + 2 * v2 + 2 * v3 + v4);
        v += h / 6 * (a1 + 2 * a2 + 2 * a3 + a4);
    }
};

struct SpringTest : testing::TestWithParam<Motion> {};

} // namespace

TEST_P(SpringTest, MovesAsItsEquationSaysAndStaysOnceItHasSettled) {
    const Motion motion = GetParam();
    const Spring spring(Seconds(motion.response), motion.damping, motion.offset, motion.velocity);
    Integrated expected(motion);
    const double h = motion.response / 20000;
    bool settled = false;
    for (int i = 0; i < 20000 * 8; ++i) {
        const Seconds time(i * h);
        if (i % 100 == 0) {
            ASSERT_NEAR(spring.value(time), expected.x, 1e-7) << time.count();
            ASSERT_NEAR(spring.velocity(time), expected.v, 1e-5) << time.count();
            const bool now = spring.hasSettled(time, 0.001);
            ASSERT_TRUE(now || !settled);
            settled = now;
            if (settled) {
                ASSERT_LT(std::abs(expected.x), 0.001);
            }
        }
        expected.step(h);
    }
    EXPECT_EQ(settled, motion.damping > 0);
}

INSTANTIATE_TEST_SUITE_P(Motions, SpringTest,
                         testing::Values(Motion{0.5, 1.0, -1, 0}, Motion{0.35, 0.8, -1, 0},
                                         Motion{0.3, 0.6, 1, 12}, Motion{0.5, 1.0, 0, 30},
                                         Motion{0.5, 1.0 + 1e-9, 0.2, -40},
                                         Motion{0.5, 0.999999, 1, 9}, Motion{0.4, 1.8, 1, -50},
                                         Motion{1.0, 0.0, 1, 0}));

} // namespace noctra
