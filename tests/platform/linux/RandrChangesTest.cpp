#include "platform/linux/RandrChanges.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace noctra {

namespace {

RandrScreen screen(DisplayId output, xcb_randr_mode_t mode = 1, std::int16_t x = 0) {
    RandrScreen screen;
    screen.display.id = output;
    screen.output = output;
    screen.crtc = 100 + output;
    screen.gammaSize = 256;
    screen.mode = mode;
    screen.x = x;
    screen.rotation = 1;
    return screen;
}

TEST(RandrChanges, TellWhatHappenedToWhichDisplay) {
    RandrScreen turned = screen(1);
    turned.rotation = 2;
    RandrScreen onAnotherCrtc = screen(1);
    onAnotherCrtc.crtc = 7;
    RandrScreen lower = screen(1);
    lower.y = 600;
    struct Case {
        const char* name;
        std::vector<RandrScreen> before;
        std::vector<RandrScreen> after;
        std::vector<DisplayChange> expected;
    };
    for (const Case& c : std::vector<Case>{
             {"nothing", {screen(1), screen(2)}, {screen(2), screen(1)}, {}},
             {"plugged", {screen(1)}, {screen(1), screen(2)}, {{2, displayAdded}}},
             {"unplugged", {screen(1), screen(2)}, {screen(2)}, {{1, displayRemoved}}},
             {"one for another",
              {screen(1), screen(2)},
              {screen(3), screen(1)},
              {{2, displayRemoved}, {3, displayAdded}}},
             {"mode", {screen(1)}, {screen(1, 2)}, {{1, displayModeSet}}},
             {"turned", {screen(1)}, {turned}, {{1, displayModeSet}}},
             {"CRTC", {screen(1)}, {onAnotherCrtc}, {{1, displayModeSet}}},
             {"moved", {screen(1)}, {lower}, {{1, displayMoved}}},
             {"all at once", {screen(1)}, {screen(1, 2, 50)}, {{1, 10}}},
             {"all gone", {screen(1), screen(2)}, {}, {{1, displayRemoved}, {2, displayRemoved}}},
         })
        EXPECT_EQ(changesBetween(c.before, c.after), c.expected) << c.name;
}

} // namespace

} // namespace noctra
