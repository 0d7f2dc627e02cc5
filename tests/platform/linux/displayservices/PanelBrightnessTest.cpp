#include "platform/linux/displayservices/PanelBrightness.h"

#include <vector>

#include <gtest/gtest.h>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;
using Values = std::vector<unsigned int>;

/// A backlight with 1000 steps that takes what it is told, unless it is stuck.
struct Backlight {
    PanelBrightness state;
    unsigned int value = 400;
    std::optional<unsigned int> actual; ///< nothing: as the setting
    bool fails = false;
    TimePoint now{1h};

    Backlight() { state.setMaximum(1000); }
    [[nodiscard]] BacklightReading reading() const { return {value, actual ? actual : value}; }
    /// Does what is due within `time`; gives what was written.
    Values run(std::chrono::milliseconds time, bool finishing = false) {
        Values written;
        for (const TimePoint end = now + time; now < end; now += 1ms)
            while (state.due(finishing) && *state.due(finishing) <= now) {
                const auto next = state.step(reading(), now, finishing);
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
    up.state.want(1, true);
    EXPECT_EQ(up.run(1s), (Values{460, 520, 580, 640, 700, 760, 820, 880, 940, 1000}));
    Backlight down;
    down.value = 3;
    down.state.want(0, true);
    EXPECT_EQ(down.run(1s), (Values{2, 1, 0})) << "no value twice";
    Backlight plain;
    plain.state.want(0.333F, false);
    EXPECT_EQ(plain.run(1s), (Values{333}));
    plain.state.want(1, true);
    plain.run(1ms);
    plain.now += 5s; // a slow monitor came between
    EXPECT_EQ(plain.run(1s), (Values{1000}));
}

TEST(PanelBrightness, TurnsRoundWhereANewerWishComes) {
    Backlight backlight;
    backlight.state.want(1, true);
    backlight.run(60ms);
    ASSERT_GT(backlight.value, 400U);
    EXPECT_EQ(backlight.state.own(), (OwnLevel{400, 1000}));
    backlight.state.want(0.4F, true);
    EXPECT_EQ(backlight.run(1s).size(), 10U);
    EXPECT_EQ(backlight.value, 400U);
    backlight.state.want(0.4F, false);
    EXPECT_EQ(backlight.run(1s), Values());
    EXPECT_FALSE(backlight.state.own());
    backlight.state.want(1, true);
    backlight.run(60ms);
    EXPECT_EQ(backlight.run(1ms, true), (Values{1000})) << "no time at the end";
}

TEST(PanelBrightness, IsWhatItIsSetToWhateverScaleTheHardwareCountsOn) {
    struct Case {
        unsigned int actualBefore;
        unsigned int actualAtFull;
        float answer;
    };
    for (const auto& [before, after, answer] : std::vector<Case>{
             {310, 970, 1.0F},     // amdgpu
             {60000, 65535, 1.0F}, // beyond the maximum
             {0, 0, 1.0F},         // dark
             {400, 400, 0.4F},     // it has not moved at all
         }) {
        Backlight backlight;
        backlight.actual = before;
        EXPECT_EQ(backlight.state.brightness(backlight.reading()), 0.4F);
        backlight.state.want(1, true);
        EXPECT_EQ(backlight.state.brightness(backlight.reading()), 1.0F);
        backlight.run(1s);
        backlight.actual = after;
        EXPECT_EQ(backlight.state.brightness(backlight.reading()), answer) << after;
        backlight.state.want(0.4F, false);
        backlight.run(1s);
        EXPECT_EQ(backlight.state.brightness(backlight.reading()), 0.4F) << after;
    }
}

TEST(PanelBrightness, KeepsTheLevelThatItHadWhenItWasLockedWhateverItsKeysDoMeanwhile) {
    Backlight backlight;
    backlight.value = 1000;
    for (const unsigned int byHand : {1000U, 500U}) {
        backlight.value = byHand;
        backlight.state.want(1, true);
        backlight.run(1s);
        EXPECT_EQ(backlight.value, 1000U);
        EXPECT_EQ(backlight.state.own(), (OwnLevel{1000, 1000}));
    }
    backlight.value = 500;
    backlight.state.want(1, false);
    EXPECT_EQ(backlight.run(1s), (Values{1000}));
    EXPECT_FALSE(backlight.state.own()) << "else its end would set it to 500";
    backlight.state.want(1, true);
    backlight.state.wantOwn();
    EXPECT_EQ(backlight.run(1s, true), Values());
}

TEST(PanelBrightness, IsTriedUntilItTakesAValueAndThenCanBeChangedAgain) {
    Backlight backlight;
    backlight.state.expectQuestion();
    EXPECT_EQ(backlight.run(1ms), (Values{400})) << "nobody knows yet whether it can be written";
    backlight.fails = true;
    backlight.state.want(1, true);
    EXPECT_EQ(backlight.run(250ms).size(), 2U) << "spaced";
    EXPECT_TRUE(backlight.state.canChange());
    EXPECT_EQ(backlight.state.brightness(backlight.reading()), 0.4F) << "nothing is claimed";
    backlight.run(10min);
    EXPECT_FALSE(backlight.state.canChange());
    backlight.state.want(0.4F, false);
    EXPECT_EQ(backlight.run(1ms), (Values{400})) << "a write that failed may still be on its way";
    backlight.fails = false;
    EXPECT_EQ(backlight.run(31s), (Values{400}));
    EXPECT_TRUE(backlight.state.canChange());
    EXPECT_FALSE(backlight.state.own());
}

TEST(PanelBrightness, ThatNothingMayWriteCannotBeChangedUntilSomebodyAsksInABetterTime) {
    Backlight backlight;
    backlight.fails = true;
    EXPECT_TRUE(backlight.state.canChange());
    backlight.state.expectQuestion();
    backlight.run(1ms);
    EXPECT_FALSE(backlight.state.canChange());
    backlight.fails = false;
    EXPECT_EQ(backlight.run(1min), Values());
    backlight.state.expectQuestion();
    EXPECT_EQ(backlight.run(1s), (Values{400}));
    EXPECT_TRUE(backlight.state.canChange());
    backlight.state.setMaximum(0);
    EXPECT_FALSE(backlight.state.canChange());
}

TEST(PanelBrightness, ThatAnEarlierRunHasLeftAtFullGetsItsOwnLevelUnlessItWasSetSince) {
    for (const auto& [found, written] :
         {std::pair(1000U, Values{700}), std::pair(699U, Values())}) {
        Backlight backlight;
        backlight.value = found;
        backlight.state.resume({70, 100}); // it counts in other units today
        EXPECT_EQ(backlight.run(1s), written);
        EXPECT_FALSE(backlight.state.own());
    }
}

} // namespace

} // namespace noctra::display_services
