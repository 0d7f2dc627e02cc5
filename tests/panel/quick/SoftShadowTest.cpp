#include "panel/quick/SoftShadow.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QImage>

#include <gtest/gtest.h>

namespace noctra {

namespace {

/// The share of a gaussian's weight that lies between `from` and `to`, seen from `at`.
double gaussianShare(double at, double from, double to, double sigma) {
    const double unit = sigma * std::sqrt(2.0);
    return (std::erf((to - at) / unit) - std::erf((from - at) / unit)) / 2.0;
}

} // namespace

TEST(SoftShadowTest, SpreadsAPointLikeAGaussianAndLosesNothing) {
    for (const double sigma : {1.0, 1.25, 3.0, 5.5, 12.0}) {
        // A square, so that eight bits resolve its tails.
        constexpr int side = 20;
        const int bleed = SoftShadow::bleed(sigma);
        const int size = side + 2 * bleed;
        QImage mask(size, size + 3, QImage::Format_Alpha8);
        mask.fill(0);
        for (int y = 0; y < side; ++y)
            std::fill_n(mask.scanLine(bleed + y) + bleed, side, std::uint8_t{255});
        SoftShadow().blur(mask, sigma);
        double sum = 0.0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const double expected = 255 * gaussianShare(x + 0.5, bleed, bleed + side, sigma) *
                                        gaussianShare(y + 0.5, bleed, bleed + side, sigma);
                ASSERT_NEAR(mask.constScanLine(y)[x], expected, 6)
                    << sigma << ": " << x << " " << y;
                sum += mask.constScanLine(y)[x];
            }
        EXPECT_NEAR(sum / (255.0 * side * side), 1.0, 0.01) << sigma;
    }
}

} // namespace noctra
