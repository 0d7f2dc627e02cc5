#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "panel/FaderKeys.h"
#include "panel/StudioFader.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace noctra {

void PrintTo(const Rect& rect, std::ostream* out) {
    *out << "(" << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ")";
}

namespace {

constexpr Color accent{1.0, 0.5, 0.0};

struct FaderTest : testing::Test {
    SimulatedDesktop desktop;
    double bound = 0.5;
    std::string heard; // what reached the panel, in order

    StudioFader element{.value = {[this] { return bound; },
                                  [this](double x) {
                                      bound = x;
                                      hear(x);
                                  }},
                        .color = accent,
                        .onDragStateChanged = [this](bool dragging) {
                            heard += dragging ? "down " : "up ";
                        }};
    NativeSliderView slider = element.body(141.0, 200.0).slider;
    std::unique_ptr<FaderNSView> fader;

    FaderTest() { make(); }

    void make() {
        slider = element.body(141.0, 200.0).slider;
        fader = slider.makeNSView(desktop.mainQueue, desktop.steady);
        fader->setSize(141.0, 200.0);
        fader->layout();
    }
    void hear(double x) {
        std::ostringstream number;
        number << x << " ";
        heard += number.str();
    }
    std::string takeHeard() {
        desktop.settle();
        return std::exchange(heard, {});
    }
    Rect capShown() { return fader->capLayer->presentationFrame(desktop.steady.now()); }
    void press(double y) { fader->mouseDown({y}); }
    void dragTo(double y) { fader->mouseDragged({y}); }
};

} // namespace

TEST_F(FaderTest, FollowsThePointerFromWhereTheDragBeganAndStopsAtTheEnds) {
    element.minimumValue = 0.1;
    make();
    press(1000);
    for (const auto& [y, value] : std::vector<std::pair<double, double>>{
             {1016, 0.6}, {5000, 1.0}, {1040, 0.75}, {-5000, 0.1}, {984, 0.4}}) {
        dragTo(y);
        EXPECT_DOUBLE_EQ(fader->currentValue, value) << y;
        EXPECT_DOUBLE_EQ(capShown().y, 160 * value + 12) << "at once";
    }
    fader->mouseUp();
    EXPECT_EQ(takeHeard(), "down 0.5 0.6 1 0.75 0.1 0.4 up 0.4 ");
}

TEST_F(FaderTest, WritesEachStepOnALaterTurnOfTheMainQueueAndInOrder) {
    press(0);
    dragTo(16);
    desktop.mainQueue.runDue();
    EXPECT_EQ(heard, "down 0.5 0.6 ");
    dragTo(32);
    fader->cancelDrag(); // the pointer was taken away
    fader->cancelDrag();
    EXPECT_EQ(takeHeard(), "down 0.5 0.6 0.7 up 0.7 ");
    EXPECT_FALSE(fader->isDragging);
}

TEST_F(FaderTest, KeysAndWheelLeaveNoHundredthOutAndReachTheEnds) {
    element.minimumValue = 0.1;
    make();
    FaderWheel wheel;
    const auto go = [&](double to) {
        fader->setValueByUser(to, false);
        desktop.settle();
        return static_cast<int>(fader->currentValue * 100.0); // as the readout cuts it off
    };
    const auto press = [&](FaderKey key) {
        return go(faderValueAfter(key, fader->latestValue(), 0.1));
    };
    const auto turn = [&](int units) {
        return go(faderValueOf(hundredthsOf(fader->latestValue()) + wheel.turn(units)));
    };
    go(1.0);
    for (int percent = 100; percent > 10; --percent)
        ASSERT_EQ(press(FaderKey::down), percent - 1);
    for (int percent = 10; percent < 100; percent += 10)
        ASSERT_EQ(press(FaderKey::pageUp), percent + 10);
    EXPECT_EQ(fader->currentValue, 1.0);
    for (int percent = 100; percent > 10; percent -= 2)
        ASSERT_EQ(turn(-120), percent - 2);
    EXPECT_EQ(fader->currentValue, 0.1);
    for (int percent = 10; percent < 100; ++percent)
        ASSERT_EQ(press(FaderKey::up), percent + 1);
    for (int percent = 100; percent > 10; percent -= 10)
        ASSERT_EQ(press(FaderKey::pageDown), percent - 10);

    EXPECT_EQ(turn(-45), 10);
    for (const int percent : {10, 11, 11, 12}) // a fine wheel, turned round
        EXPECT_EQ(turn(30), percent);
    go(0.858); // where a drag has left it
    EXPECT_EQ(press(FaderKey::up), 86);
    go(0.858);
    EXPECT_EQ(press(FaderKey::down), 84);
    go(0.57); // reads as 56
    EXPECT_EQ(press(FaderKey::up), 57);
}

TEST_F(FaderTest, ShowsTheBindingWithinTheBoundsAndWritesNothing) {
    struct Case {
        double bound, minimum, shown;
    };
    for (const auto& [value, minimum, shown] :
         std::vector<Case>{{0.05, 0.1, 0.1}, {1.5, 0.1, 1.0}, {0.5, 1.2, 1.0}, {0.3, 0.0, 0.3}}) {
        bound = value;
        element.minimumValue = minimum;
        make();
        EXPECT_EQ(fader->currentValue, shown);
        fader->currentValue = 0.9;
        slider.updateNSView(*fader);
        EXPECT_EQ(fader->currentValue, shown);
        EXPECT_EQ(fader->minimumValue, minimum);
    }
    EXPECT_EQ(takeHeard(), "");
}

TEST_F(FaderTest, GlidesToChangesFromOutsideThatAreGreaterThanAHundredth) {
    bound = 0.0;
    slider.updateNSView(*fader);
    desktop.advance(Seconds(0.2));
    bound = 0.01;
    slider.updateNSView(*fader);
    EXPECT_FALSE(fader->capLayer->isGliding(desktop.steady.now()));
    bound = 0.0201;
    slider.updateNSView(*fader);
    EXPECT_TRUE(fader->capLayer->isGliding(desktop.steady.now()));
    EXPECT_DOUBLE_EQ(capShown().y, 160 * 0.01 + 12);

    desktop.advance(Seconds(0.09));
    slider.updateNSView(*fader); // rendered again: the glide goes on
    // Half the time of the ease-out curve: 0.6846 of the way.
    EXPECT_NEAR(capShown().y, 12 + 160 * (0.01 + 0.0101 * 0.68458), 1e-3);
    desktop.advance(Seconds(0.0901));
    EXPECT_DOUBLE_EQ(capShown().y, 160 * 0.0201 + 12);
}

} // namespace noctra
