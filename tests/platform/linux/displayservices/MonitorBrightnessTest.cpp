#include "platform/linux/displayservices/MonitorBrightness.h"

#include <string>

#include <gtest/gtest.h>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;
using Step = MonitorBrightness::Step;

/// A monitor's state on a clock that the test moves.
struct Desk {
    MonitorBrightness state;
    TimePoint now{1h};

    Desk& after(std::chrono::milliseconds time) {
        now += time;
        return *this;
    }
    /// The next command, and in how many milliseconds it is due: "write 100 in 50".
    std::string next(bool finishing = false) {
        const auto task = state.plan(now, finishing);
        if (!task)
            return "nothing";
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(task->due - now).count();
        const std::string in = " in " + std::to_string(std::max<std::int64_t>(wait, 0));
        switch (task->step) {
        case Step::write:
            return "write " + std::to_string(task->raw) + in;
        case Step::compare:
            return "compare" + in;
        case Step::verify:
            return "verify" + in;
        case Step::refresh:
            return "refresh" + in;
        }
        return "?";
    }
    Desk& reads(std::uint16_t raw, std::uint16_t maximum = 100) {
        state.readDone(MonitorValue{raw, maximum}, now);
        return *this;
    }
    Desk& failsToRead() {
        state.readDone(std::nullopt, now);
        return *this;
    }
    Desk& wrote(std::uint16_t raw, bool succeeded = true) {
        EXPECT_TRUE(state.writeBegins(raw));
        state.writeDone(raw, succeeded, now);
        return *this;
    }
    Desk& locks() {
        state.want(1, false, now);
        return *this;
    }
    Desk& putsBack(float level) {
        state.want(level, true, now);
        return *this;
    }
    std::optional<float> answer() { return state.brightness(now); }
};

/// One that has been read at 40 of 100, and then left alone for a while.
Desk deskAt40(std::chrono::milliseconds ago) {
    Desk desk;
    desk.reads(40).after(ago);
    return desk;
}

TEST(MonitorBrightness, IsReadFirstAndThenGivesBackEveryValueUnchanged) {
    Desk desk;
    EXPECT_EQ(desk.next(), "refresh in 0");
    EXPECT_FALSE(desk.state.canChange());
    EXPECT_EQ(desk.answer(), std::nullopt);
    for (const std::uint16_t maximum : {1, 3, 80, 100, 255, 1023, 65535})
        for (unsigned int raw = 0; raw <= maximum; raw += maximum > 10000 ? 97 : 1) {
            Desk other;
            other.reads(static_cast<std::uint16_t>(raw), maximum);
            other.putsBack(*other.answer());
            ASSERT_EQ(other.next(), "nothing") << raw << " of " << maximum;
        }
}

TEST(MonitorBrightness, IsComparedBeforeAWriteAndReadBackAfterIt) {
    EXPECT_EQ(deskAt40(1s).locks().next(), "write 100 in 0");
    Desk desk = deskAt40(2s);
    EXPECT_EQ(desk.locks().next(), "compare in 0") << "its own buttons may have been used";
    EXPECT_EQ(desk.reads(100).next(), "nothing") << "it has it already";
    desk = deskAt40(1s).locks().wrote(100);
    EXPECT_EQ(desk.next(), "verify in 100");
    EXPECT_EQ(desk.after(100ms).reads(40).next(), "verify in 300") << "some are slow";
    EXPECT_EQ(desk.answer(), 1.0F);
    EXPECT_EQ(desk.after(300ms).reads(40).next(), "write 100 in 300") << "it has not taken it";
    EXPECT_EQ(desk.answer(), 0.4F) << "nothing is claimed";
    EXPECT_EQ(desk.after(300ms).wrote(100).after(100ms).reads(100).next(), "nothing");
    EXPECT_EQ(desk.answer(), 1.0F);
}

TEST(MonitorBrightness, IsAtNothingWhileAWriteIsUnderWay) {
    Desk desk = deskAt40(1s).locks();
    EXPECT_TRUE(desk.state.writeBegins(100));
    desk.putsBack(0.4F); // what the last reading has found
    EXPECT_TRUE(desk.state.isPending());
    desk.state.writeDone(100, true, desk.now);
    EXPECT_EQ(desk.next(), "write 40 in 50");
    EXPECT_EQ(desk.next(true), "write 40 in 50");
    desk.after(50ms).wrote(40);
    EXPECT_EQ(desk.next(true), "verify in 100");
    EXPECT_TRUE(desk.state.own());
    desk.after(100ms).reads(40);
    EXPECT_FALSE(desk.state.isPending());
    EXPECT_FALSE(desk.state.own());
}

TEST(MonitorBrightness, GetsBackWhatItHadWhereItWasTurnedBetweenTheAnswerAndTheWrite) {
    for (const std::uint16_t old : {40, 100}) {
        Desk desk;
        desk.reads(old);
        const float answer = *desk.answer();
        desk.after(10s).locks();
        desk.reads(60).wrote(100).after(100ms).reads(100).after(10s);
        EXPECT_EQ(desk.state.own(), (OwnLevel{60, 100}));
        desk.putsBack(answer).reads(100);
        EXPECT_EQ(desk.next(), "write 60 in 50");
        desk.after(50ms).wrote(60).after(100ms).reads(60);
        desk.after(10s).putsBack(answer).reads(60);
        EXPECT_EQ(desk.next(), "write " + std::to_string(old) + " in 50") << "only once";
    }
}

TEST(MonitorBrightness, KeepsTheLevelThatItHadWhenItWasLockedWhateverItsButtonsDoMeanwhile) {
    Desk desk;
    desk.reads(100).locks().locks();
    EXPECT_EQ(desk.next(), "nothing");
    EXPECT_EQ(desk.state.own(), (OwnLevel{100, 100}));
    desk.after(10s).reads(50).locks().wrote(100).after(100ms).reads(100).putsBack(1);
    EXPECT_FALSE(desk.state.own()) << "else its end would set it to 50";
    desk.after(10s).reads(50).putsBack(1).wrote(100).after(100ms).reads(100);
    EXPECT_FALSE(desk.state.own());
}

TEST(MonitorBrightness, IsNotWrittenToForAWishThatHasBeenReplacedBeforeTheWriteBegins) {
    Desk desk = deskAt40(1s).locks();
    EXPECT_EQ(desk.next(), "write 100 in 0");
    desk.putsBack(0.4F);
    EXPECT_FALSE(desk.state.writeBegins(100));
    desk = deskAt40(1min).locks();
    desk.state.wantOwn(desk.now);
    EXPECT_EQ(desk.next(true), "nothing") << "it is not locked at the end";
}

TEST(MonitorBrightness, CanBeChangedOnceItHasAnAnswerToWhatItHasNow) {
    Desk desk = deskAt40(1s).failsToRead().failsToRead().failsToRead();
    desk.state.comeBack();
    EXPECT_EQ(desk.answer(), std::nullopt);
    EXPECT_FALSE(desk.state.canChange()) << "it would be locked and never put back";
    EXPECT_TRUE(desk.reads(40).state.canChange());
}

TEST(MonitorBrightness, IsTriedAgainAfterGrowingPausesAndSoonWhereSomebodyAsks) {
    Desk desk = deskAt40(1s).locks();
    for (const char* expected : {"write 100 in 300", "write 100 in 600", "write 100 in 1200"})
        EXPECT_EQ(desk.after(1500ms).wrote(100, false).reads(40).next(), expected);
    for (int i = 0; i < 20; ++i)
        desk.failsToRead();
    EXPECT_EQ(desk.next(), "write 100 in 30000");
    EXPECT_EQ(desk.next(true), "write 100 in 300") << "there is little time at the end";
    EXPECT_FALSE(desk.state.canChange());
    EXPECT_EQ(desk.answer(), std::nullopt);
    desk.state.expectQuestion(desk.now);
    EXPECT_EQ(desk.next(), "write 100 in 300");
    desk.state.comeBack();
    EXPECT_EQ(desk.next(), "write 100 in 50");
    EXPECT_EQ(desk.reads(40).next(), "write 100 in 50");
}

TEST(MonitorBrightness, IsWrittenToBlindlyWhereItCanBeReadNoMore) {
    Desk desk = deskAt40(1min).locks().failsToRead();
    EXPECT_EQ(desk.next(), "compare in 300") << "it may have been turned since";
    EXPECT_EQ(desk.failsToRead().failsToRead().next(), "write 100 in 300");
    desk.wrote(100);
    EXPECT_EQ(desk.next(), "verify in 300");
    EXPECT_EQ(desk.state.own(), (OwnLevel{40, 100}));
}

TEST(MonitorBrightness, ThatAnEarlierRunHasLeftAtFullGetsItsOwnLevelUnlessItWasSetSince) {
    struct Case {
        std::uint16_t found;
        const char* next;
    };
    for (const auto& [found, next] : {Case{100, "write 140 in 50"}, {69, "nothing"}}) {
        Desk desk;
        desk.state.resume({70, 100});
        EXPECT_EQ(desk.next(), "compare in 0");
        EXPECT_EQ(desk.answer(), std::nullopt);
        desk.reads(static_cast<std::uint16_t>(found * 2), 200); // it counts in other units today
        EXPECT_EQ(desk.next(), next);
    }
}

TEST(MonitorBrightness, RenewsAnAnswerThatIsOldAndNeverMoreThanOnceASecond) {
    Desk desk = deskAt40(999ms);
    EXPECT_EQ(desk.answer(), 0.4F);
    EXPECT_EQ(desk.next(), "nothing");
    EXPECT_EQ(desk.after(1ms).answer(), 0.4F);
    EXPECT_EQ(desk.next(), "refresh in 0");
    EXPECT_EQ(desk.next(true), "nothing");
    EXPECT_EQ(desk.failsToRead().next(), "refresh in 1000");
}

} // namespace

} // namespace noctra::display_services
