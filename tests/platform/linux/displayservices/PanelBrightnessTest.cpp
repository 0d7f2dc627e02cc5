#include "platform/linux/displayservices/PanelBrightness.h"

#include <vector>

#include <gtest/gtest.h>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

/// A backlight with 1000 steps that does what it is told, unless it is stuck.
struct Backlight {
    PanelBrightness state;
    unsigned int value = 400;
    bool fails = false;
    TimePoint now{1h};

    Backlight() { state.setMaximum(1000); }
    /// Does what is due within `time`; gives what was written.
    std::vector<unsigned int> run(std::chrono::milliseconds time, bool finishing = false) {
        std::vector<unsigned int> written;
        for (const TimePoint end = now + time; now < end; now += 1ms)
            while (state.due() && *state.due() <= now) {
                const auto next = state.step(value, now, finishing);
                if (!next)
                    continue;
                written.push_back(*next);
                if (!fails)
                    value = *next;
                state.written(*next, !fails, now);
            }
        return written;
    }
};

TEST(PanelBrightness, GoesThereInStepsThatEndExactly) {
    Backlight up;
    up.state.request(1, true);
    EXPECT_EQ(up.run(1s),
              (std::vector<unsigned int>{460, 520, 580, 640, 700, 760, 820, 880, 940, 1000}));
    Backlight down;
    down.value = 3;
    down.state.request(0, true);
    EXPECT_EQ(down.run(1s), (std::vector<unsigned int>{2, 1, 0})) << "no value twice";
    Backlight plain;
    plain.state.request(0.333F, false);
    EXPECT_EQ(plain.run(1s), (std::vector<unsigned int>{333}));
}

TEST(PanelBrightness, TurnsRoundWhereANewerRequestComes) {
    Backlight backlight;
    backlight.state.request(1, true);
    backlight.run(60ms);
    ASSERT_GT(backlight.value, 400U);
    backlight.state.request(0.4F, true);
    const auto back = backlight.run(1s);
    EXPECT_EQ(back.size(), 10U);
    EXPECT_EQ(backlight.value, 400U);
    backlight.state.request(1, true);
    backlight.run(60ms);
    EXPECT_EQ(backlight.run(1ms, true), (std::vector<unsigned int>{1000})) << "no time at the end";
}

TEST(PanelBrightness, WritesToABacklightThatHasNotFollowedTheLastWrite) {
    Backlight backlight;
    backlight.fails = true;
    backlight.state.request(1, false);
    EXPECT_EQ(backlight.state.pendingBrightness(), 1.0F);
    const auto first = backlight.state.step(400, backlight.now, false);
    backlight.state.written(*first, true, backlight.now); // it took it, but shines as before
    backlight.state.request(0.4F, false);
    EXPECT_EQ(backlight.state.step(400, backlight.now, false), 400U);
}

TEST(PanelBrightness, SkipsTheStepsThatItHadNoTimeFor) {
    Backlight backlight;
    backlight.state.request(1, true);
    backlight.run(1ms);
    backlight.now += 5s; // a slow monitor came between
    EXPECT_EQ(backlight.run(1s), (std::vector<unsigned int>{1000}));
}

TEST(PanelBrightness, CannotBeChangedAfterThreeFailuresUntilOneWriteWorks) {
    Backlight backlight;
    backlight.fails = true;
    backlight.state.request(1, false);
    EXPECT_EQ(backlight.run(150ms).size(), 2U) << "spaced";
    EXPECT_TRUE(backlight.state.canChange());
    backlight.run(1s);
    EXPECT_FALSE(backlight.state.canChange());
    EXPECT_FALSE(backlight.state.isPending());
    backlight.state.request(1, false);
    EXPECT_EQ(backlight.run(1s).size(), 3U) << "every request gets its tries";
    backlight.fails = false;
    backlight.state.request(1, false);
    backlight.run(1s);
    EXPECT_TRUE(backlight.state.canChange());
    backlight.state.setMaximum(0);
    EXPECT_FALSE(backlight.state.canChange());
}

} // namespace

} // namespace noctra::display_services
