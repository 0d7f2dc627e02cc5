#include "platform/linux/tray/ClosingPress.h"

#include <gtest/gtest.h>

namespace noctra {

namespace {

using std::chrono::milliseconds;

constexpr PixelPoint icon{1880, 12};
constexpr SteadyClock::TimePoint pressed{std::chrono::hours(5)};

TEST(ClosingPress, SwallowsTheActivationThatItsOwnReleaseBrings) {
    struct Case {
        const char* situation;
        PixelPoint at;
        milliseconds later;
        bool swallowed;
    };
    for (const Case& known : {Case{"at once", icon, milliseconds(0), true},
                              Case{"a slow, trembling hand", {1868, 20}, milliseconds(900), true},
                              Case{"somewhere else", {1880, 40}, milliseconds(100), false},
                              Case{"held for long", icon, milliseconds(1100), false}}) {
        ClosingPress press;
        press.closedByPress(icon, pressed);
        EXPECT_EQ(press.swallows(known.at, pressed + known.later), known.swallowed)
            << known.situation;
        EXPECT_FALSE(press.swallows(icon, pressed + known.later)) << "the next click";
    }
    EXPECT_FALSE(ClosingPress().swallows(icon, pressed)) << "no press";
}

} // namespace

} // namespace noctra
