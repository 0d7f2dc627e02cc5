#include "platform/linux/tray/ClosingPress.h"

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedStatusBar.h"

namespace noctra {

namespace {

constexpr PixelPoint icon{1880, 12};

TEST(ClosingPress, SwallowsTheActivationThatItsOwnReleaseBrings) {
    struct Case {
        const char* situation;
        PixelPoint at;
        bool pressesAgain;
        bool swallowed;
    };
    for (const Case& known :
         {Case{"on the item", icon, false, true}, Case{"a trembling hand", {1868, 20}, false, true},
          Case{"somewhere else", {1880, 40}, false, false},
          Case{"slid off, then clicked anew", icon, true, false}}) {
        SimulatedEventMonitors monitors;
        ClosingPress press(monitors);
        press.closedByPress(icon);
        if (known.pressesAgain)
            static_cast<void>(monitors.pressElsewhere());
        EXPECT_EQ(press.swallows(known.at), known.swallowed) << known.situation;
        EXPECT_FALSE(press.swallows(icon)) << "the next click";
        EXPECT_EQ(monitors.pressElsewhere(), 0) << "nobody listens longer than he has to";
    }
}

} // namespace

} // namespace noctra
