#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "panel/LayerTransaction.h"
#include "platform/simulated/VirtualTime.h"

namespace noctra {

namespace {

struct LayerTest : testing::Test, LayerHost {
    VirtualSteadyClock clock;
    std::shared_ptr<Layer> root = std::make_shared<Layer>();
    std::shared_ptr<Layer> layer = std::make_shared<Layer>();
    std::string heard;

    LayerTest() {
        root->setHost(this);
        root->addSublayer(layer);
        layer->setFrame({0, 0, 10, 10});
        heard.clear();
    }
    void layerChanged(const Layer& changed, LayerChange change) override {
        heard += &changed == root.get() ? "root:" : "layer:";
        heard += std::string(1, "glt"[static_cast<int>(change)]) + " ";
    }
    void glideTo(const Rect& frame, Seconds duration = Seconds(1)) {
        LayerTransaction transaction(*root, clock);
        transaction.setAnimationDuration(duration);
        transaction.setAnimationTimingFunction({0.25, 0.25, 0.75, 0.75}); // a straight line
        layer->setFrame(frame);
    }
    void pass(double seconds) {
        clock.set(clock.now() +
                  std::chrono::duration_cast<SteadyClock::TimePoint::duration>(Seconds(seconds)));
    }
    double shownY() { return layer->presentationFrame(clock.now()).y; }
};

} // namespace

TEST_F(LayerTest, GlidesFromWhatIsShownAlsoInTheMiddleOfAGlide) {
    glideTo({0, 10, 10, 30});
    EXPECT_EQ(shownY(), 0);
    pass(0.5);
    EXPECT_NEAR(shownY(), 5, 1e-9);
    EXPECT_NEAR(layer->presentationFrame(clock.now()).height, 20, 1e-9);
    glideTo({0, 0, 10, 10});
    EXPECT_NEAR(shownY(), 5, 1e-9);
    pass(0.4);
    EXPECT_NEAR(shownY(), 3, 1e-9);
    pass(0.6);
    EXPECT_FALSE(layer->isGliding(clock.now()));
    EXPECT_EQ(shownY(), 0);
}

TEST(CubicBezierTest, MeetsPointsOfTheCurveItself) {
    for (const CubicBezier& curve :
         {timing::easeOut, timing::easeInOut, CubicBezier{1.0, 0.0, 0.0, 1.0}})
        for (double s = 0.0; s <= 1.0; s += 1.0 / 64) {
            const double a = 3 * (1 - s) * (1 - s) * s;
            const double b = 3 * (1 - s) * s * s;
            const double x = a * curve.x1 + b * curve.x2 + s * s * s;
            const double y = a * curve.y1 + b * curve.y2 + s * s * s;
            if (std::abs(s - 0.5) > 0.1 || curve.x1 < 1.0) { // it stands upright there
                EXPECT_NEAR(curve(x), y, 1e-9) << s;
            }
        }
    EXPECT_EQ(timing::easeOut(-1), 0);
    EXPECT_EQ(timing::easeOut(2), 1);
}

} // namespace noctra
