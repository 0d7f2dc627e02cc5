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

TEST(LinuxDisplayChangesTest, AnnouncesBeginsThenChangesThenTheNewScreenToWhoeverIsStillThere) {
    LinuxDisplayChanges changes;
    std::vector<std::string> heard;
    const auto handlers = [&](const std::string& who) {
        return DisplayChanges::Handlers{
            .woke = [&heard, who] { heard.push_back(who + " woke"); },
            .screenParametersChanged = [&heard, who] { heard.push_back(who + " screen"); },
            .reconfigured =
                [&heard, who](DisplayId display, DisplayChangeFlags flags) {
                    heard.push_back(who + " " + std::to_string(display) + ":" +
                                    std::to_string(flags));
                },
            .brightnessControlsChanged = nullptr,
        };
    };
    const AnyCancellable kept = changes.subscribe(handlers("kept"));
    AnyCancellable dropped = changes.subscribe(handlers("dropped"));
    dropped.cancel();
    changes.configurationChanged({{4, displayRemoved}, {5, displayAdded}});
    changes.configurationChanged({});
    changes.brightnessControlsChanged();
    changes.woke();
    EXPECT_EQ(heard, (std::vector<std::string>{"kept 4:1", "kept 5:1", "kept 4:32", "kept 5:16",
                                               "kept screen", "kept screen", "kept woke"}));
}

} // namespace

} // namespace noctra
