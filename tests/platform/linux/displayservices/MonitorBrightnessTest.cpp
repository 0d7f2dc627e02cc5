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
        state.writeDone(raw, succeeded, now);
        return *this;
    }
    Desk& asksFor(float brightness) {
        state.request(brightness, now);
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
            other.asksFor(*other.answer());
            ASSERT_EQ(other.next(), "nothing") << raw << " of " << maximum;
        }
}

TEST(MonitorBrightness, IsComparedFirstWhereTheReadingIsOld) {
    struct Case {
        std::chrono::milliseconds age;
        bool finishing;
        float wanted;
        std::string next;
    };
    for (const Case& row : {Case{60ms, false, 1.0F, "write 100 in 0"},
                            {10ms, false, 1.0F, "write 100 in 40"}, // apart from the reading
                            {1900ms, false, 1.0F, "write 100 in 0"},
                            {1900ms, false, 0.4F, "nothing"},
                            {2100ms, false, 1.0F, "compare in 0"},
                            {2100ms, false, 0.4F, "compare in 0"},
                            {2100ms, true, 1.0F, "write 100 in 0"},
                            {24h, true, 0.4F, "nothing"}}) {
        Desk desk = deskAt40(row.age);
        EXPECT_EQ(desk.asksFor(row.wanted).next(row.finishing), row.next)
            << row.age.count() << " ms, to " << row.wanted;
    }
    Desk unknown;
    EXPECT_EQ(unknown.asksFor(1).next(true), "compare in 0") << "its units are unknown";
}

TEST(MonitorBrightness, IsReadBackAfterAWriteButAFurtherWriteGoesFirst) {
    Desk desk = deskAt40(60ms);
    desk.asksFor(1).wrote(100);
    EXPECT_EQ(desk.next(), "verify in 100");
    EXPECT_EQ(desk.answer(), 1.0F);
    EXPECT_EQ(desk.asksFor(0.4F).next(), "write 40 in 50") << "it may be at 100 by now";
    EXPECT_EQ(desk.asksFor(1).next(), "verify in 100") << "it has been told that already";
    desk.after(100ms).reads(100);
    EXPECT_EQ(desk.next(), "nothing");
    EXPECT_EQ(desk.answer(), 1.0F);
}

TEST(MonitorBrightness, IsNotReadBackAtTheEndAndWrittenToWhereItsValueIsUnknown) {
    Desk desk = deskAt40(60ms);
    desk.asksFor(1).wrote(100).after(60ms);
    EXPECT_EQ(desk.next(true), "nothing");
    EXPECT_EQ(desk.asksFor(0.4F).next(true), "write 40 in 0") << "40 was read before the write";
}

TEST(MonitorBrightness, GetsTheNewestOfTheRequestsThatCameDuringAWrite) {
    Desk desk = deskAt40(60ms);
    desk.asksFor(1).next();
    desk.asksFor(0.7F).asksFor(0.6F).wrote(100);
    EXPECT_TRUE(desk.state.isPending());
    EXPECT_EQ(desk.next(), "write 60 in 50");
    desk.wrote(60);
    EXPECT_FALSE(desk.state.isPending());
}

TEST(MonitorBrightness, ThatHasIgnoredAValueIsAnsweredForWithWhatItHas) {
    Desk desk = deskAt40(60ms);
    desk.asksFor(1).wrote(100).after(100ms).reads(40);
    EXPECT_EQ(desk.answer(), 1.0F) << "it may be slow";
    EXPECT_EQ(desk.next(), "verify in 300");
    desk.after(300ms).reads(40);
    EXPECT_EQ(desk.answer(), 0.4F);
    EXPECT_EQ(desk.asksFor(1).answer(), 0.4F) << "so that a check of it fails";
    EXPECT_EQ(desk.asksFor(0.7F).answer(), 0.7F) << "it may well take another value";
    EXPECT_EQ(desk.asksFor(1).wrote(100).answer(), 0.4F);
    desk.after(100ms).reads(100);
    EXPECT_EQ(desk.answer(), 1.0F);
    EXPECT_EQ(desk.asksFor(0.4F).wrote(40).asksFor(1).answer(), 1.0F) << "forgiven";
}

TEST(MonitorBrightness, GetsBackWhatItHadWhereItWasTurnedBetweenTheAnswerAndTheWrite) {
    Desk desk;
    desk.reads(80).after(60min);
    EXPECT_EQ(desk.answer(), 0.8F); // and then its user has turned it down to 30
    desk.asksFor(1);
    EXPECT_EQ(desk.next(), "compare in 0");
    EXPECT_EQ(desk.reads(30).next(), "write 100 in 50");
    desk.wrote(100).after(100ms).reads(100).after(60min);
    EXPECT_EQ(desk.asksFor(0.8F).next(), "compare in 0");
    EXPECT_EQ(desk.reads(100).next(), "write 30 in 50");
    desk.wrote(30).after(100ms).reads(30).after(60ms);
    EXPECT_EQ(desk.asksFor(0.8F).next(), "write 80 in 0") << "once";
}

TEST(MonitorBrightness, StaysWhereItIsHeldAlsoWhereTheAnswerBeforeWasTheSameValue) {
    Desk desk;
    desk.reads(100).after(60min);
    EXPECT_EQ(desk.answer(), 1.0F); // and then its user has turned it down to 60
    desk.asksFor(1).reads(60).wrote(100).after(100ms).reads(100).after(5s);
    EXPECT_EQ(desk.asksFor(1).next(), "compare in 0");
    EXPECT_EQ(desk.reads(100).next(), "nothing") << "full is held, 60 is not what is wanted";

    Desk turnedUp = deskAt40(60min);
    turnedUp.asksFor(1).reads(40).wrote(100).after(100ms).reads(100);
    EXPECT_EQ(turnedUp.answer(), 1.0F); // and then turned down
    turnedUp.after(60s).asksFor(0.4F).reads(60).wrote(40).after(100ms).reads(40).after(60s);
    turnedUp.asksFor(1).reads(40);
    EXPECT_EQ(turnedUp.next(), "write 100 in 50");
}

TEST(MonitorBrightness, IsReadAgainWhereSomebodyMaySoonAsk) {
    Desk desk = deskAt40(1900ms);
    desk.state.expectQuestion(desk.now);
    EXPECT_EQ(desk.next(), "nothing");
    desk.after(100ms).state.expectQuestion(desk.now);
    EXPECT_EQ(desk.next(), "refresh in 0");
}

TEST(MonitorBrightness, ThatGoesBackAgainAndAgainIsWatchedForAWhile) {
    Desk desk = deskAt40(60ms);
    const auto writeAndRevert = [&](const char* verify) {
        desk.asksFor(1).wrote(100);
        EXPECT_EQ(desk.next(), verify);
        desk.after(1500ms).reads(100);
        EXPECT_EQ(desk.answer(), 1.0F);
        desk.after(5s).reads(40);
        EXPECT_EQ(desk.asksFor(1).answer(), 0.4F);
    };
    writeAndRevert("verify in 100");
    writeAndRevert("verify in 100");
    writeAndRevert("verify in 1500");
    desk.wrote(100).after(1500ms).reads(100).after(20s).reads(100); // it has held
    desk.asksFor(0.4F).wrote(40);
    EXPECT_EQ(desk.next(), "verify in 100");
}

TEST(MonitorBrightness, RenewsAnAnswerThatIsOldAndNeverMoreThanOnceASecond) {
    Desk desk = deskAt40(900ms);
    EXPECT_EQ(desk.answer(), 0.4F);
    EXPECT_EQ(desk.next(), "nothing");
    EXPECT_EQ(desk.after(100ms).answer(), 0.4F);
    EXPECT_EQ(desk.next(), "refresh in 0");
    desk.failsToRead();
    EXPECT_EQ(desk.answer(), 0.4F);
    EXPECT_EQ(desk.next(), "refresh in 1000");
}

TEST(MonitorBrightness, CannotBeChangedAfterThreeFailuresOfAKindInARow) {
    Desk reading;
    for (int i = 0; i < 3; ++i)
        reading.after(1s).failsToRead();
    EXPECT_FALSE(reading.state.canChange());
    EXPECT_EQ(reading.next(), "nothing") << "nobody asks";
    reading.answer();
    EXPECT_EQ(reading.next(), "refresh in 1000");
    EXPECT_TRUE(reading.after(1s).reads(40).state.canChange());

    Desk writing = deskAt40(60ms);
    writing.asksFor(1);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(writing.state.canChange());
        EXPECT_EQ(writing.next(), i == 0 ? "write 100 in 0" : "write 100 in 300");
        writing.wrote(100, false);
    }
    EXPECT_FALSE(writing.state.canChange());
    EXPECT_FALSE(writing.state.isPending());
    EXPECT_EQ(writing.answer(), std::nullopt);
    writing.after(1s).reads(40);
    EXPECT_TRUE(writing.state.canChange());
    EXPECT_EQ(writing.asksFor(1).answer(), 0.4F) << "a check of it fails";

    Desk reads0 = deskAt40(1s);
    for (int i = 0; i < 3; ++i)
        reads0.reads(0, 0);
    EXPECT_FALSE(reads0.state.canChange());
    reads0.state.forgive();
    EXPECT_TRUE(reads0.state.canChange());
    EXPECT_EQ(reads0.answer(), std::nullopt) << "but what it has is not known";
    EXPECT_EQ(reads0.next(), "refresh in 50");
}

TEST(MonitorBrightness, GivesANewValueItsOwnTries) {
    Desk desk = deskAt40(60ms);
    desk.asksFor(1).wrote(100, false).wrote(100, false);
    EXPECT_EQ(desk.asksFor(0.8F).next(), "write 80 in 50");
    desk.wrote(80, false).wrote(80, false);
    EXPECT_TRUE(desk.state.canChange());
    EXPECT_TRUE(desk.state.isPending());
    desk.wrote(80, false);
    EXPECT_FALSE(desk.state.canChange());
}

TEST(MonitorBrightness, IsWrittenToBlindlyWhereItCanBeReadNoMore) {
    Desk desk = deskAt40(1h);
    EXPECT_EQ(desk.asksFor(1).next(), "compare in 0");
    EXPECT_EQ(desk.failsToRead().next(), "write 100 in 50");
    desk.wrote(100);
    for (int i = 0; i < 3; ++i)
        desk.after(300ms).failsToRead();
    EXPECT_FALSE(desk.state.canChange());
    EXPECT_EQ(desk.asksFor(0.4F).next(true), "write 40 in 50") << "it is put back all the same";

    Desk unknown;
    unknown.asksFor(1).failsToRead().failsToRead().failsToRead();
    EXPECT_FALSE(unknown.state.isPending()) << "its units will never be known";
}

} // namespace

} // namespace noctra::display_services
