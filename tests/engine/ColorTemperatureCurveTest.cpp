#include "engine/ColorTemperatureCurve.h"

#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "engine/GammaRamp.h"
#include "platform/simulated/SimulatedDisplays.h"

namespace noctra {

namespace {

void expectNear(const ChannelGains& actual, const ChannelGains& expected) {
    EXPECT_NEAR(actual.r, expected.r, 5e-7);
    EXPECT_NEAR(actual.g, expected.g, 5e-7);
    EXPECT_NEAR(actual.b, expected.b, 5e-7);
}

} // namespace

TEST(ColorTemperatureCurve, GivesTheReferenceColoursOfItsTwoAnchors) {
    expectNear(ColorTemperatureCurve::cctRGB(6500.0), {1.042633, 0.983863, 1.034905});
    for (const double lowest : {2000.0, 1999.0, 0.0, -5.0})
        expectNear(ColorTemperatureCurve::cctRGB(lowest), {2.522300, 0.646484, 0.020048});
    EXPECT_EQ(ColorTemperatureCurve::cctRGB(1e6), ColorTemperatureCurve::cctRGB(25000.0));
}

TEST(ColorTemperatureCurve, FollowsWarmthFromNeutralToPureRed) {
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<double, ChannelGains>> cases{
        {-infinity, {1.0, 1.0, 1.0}},     {-0.0, {1.0, 1.0, 1.0}},
        {0.5, {1.0, 0.885918, 0.327651}}, {0.7, {1.0, 0.655876, 0.019336}},
        {0.9, {1.0, 0.163101, 0.004809}}, {1.0, {1.0, 0.0, 0.0}},
        {infinity, {1.0, 0.0, 0.0}}};
    for (const auto& [intensity, gains] : cases)
        expectNear(ColorTemperatureCurve::normalizedRGB(intensity), gains);
}

TEST(GammaRamp, ScalesEachChannelByItsGainTimesTheBrightnessInOneRounding) {
    GammaTables captured = SimulatedDisplays::linearTables();
    GammaTables output;

    scaleGammaTables(captured, {1.0, 1.0, 1.0}, 1.0, output);
    EXPECT_EQ(output, captured) << "bit for bit";

    scaleGammaTables(captured, {1.0, 0.1, 0.0}, 0.7, output);
    for (std::size_t k = 0; k < gammaTableSize; ++k) {
        EXPECT_EQ(output.red[k], captured.red[k] * 0.7F);
        EXPECT_EQ(output.green[k], captured.green[k] * static_cast<float>(0.1 * 0.7));
        EXPECT_EQ(output.blue[k], 0.0F);
    }
}

} // namespace noctra
