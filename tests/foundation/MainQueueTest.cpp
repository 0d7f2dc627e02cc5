#include <string>

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDesktop.h"

namespace noctra {

namespace {

struct MainQueueTest : testing::Test {
    SimulatedDesktop desktop;
    MainQueue& queue = desktop.mainQueue;
    std::string ran;

    std::function<void()> note(char name) {
        return [this, name] {
            ran += name;
        };
    }
};

} // namespace

TEST_F(MainQueueTest, RunsWorkInTheOrderOfItsDueTimeThenOfSubmission) {
    queue.asyncAfter(Seconds(0.3), note('d'));
    queue.asyncAfter(Seconds(0.1), note('b'));
    queue.asyncAfter(Seconds(0.1), note('c'));
    queue.async(note('a'));
    desktop.advance(Seconds(0.2));
    EXPECT_EQ(ran, "abc");
    desktop.advance(Seconds(0.2));
    EXPECT_EQ(ran, "abcd");
}

TEST_F(MainQueueTest, RunsAWorkItemOnceAfterTheLastOfABurstUnlessItIsCancelledOrDropped) {
    WorkItem item(queue, note('x'));
    for (int i = 0; i < 10; ++i) {
        item.schedule(Seconds(0.5));
        desktop.advance(Seconds(0.4));
    }
    EXPECT_EQ(ran, "");
    desktop.advance(Seconds(2));
    EXPECT_EQ(ran, "x");

    WorkItem(queue, note('y')).schedule(Seconds(0.1));
    // Due at the same moment as the one that cancels it.
    WorkItem killer(queue, [&] { item.cancel(); });
    killer.schedule(Seconds(0.2));
    item.schedule(Seconds(0.2));
    desktop.advance(Seconds(1));
    EXPECT_EQ(ran, "x");
    EXPECT_EQ(queue.pendingCount(), 0U);
}

TEST_F(MainQueueTest, RepeatsOnTheBeatUntilTheTokenIsDroppedAlsoFromInsideTheTick) {
    AnyCancellable timer;
    int ticks = 0;
    timer = queue.repeatEvery(Seconds(2), [&] {
        if (++ticks == 3)
            timer.cancel();
    });
    desktop.advance(Seconds(1.9));
    EXPECT_EQ(ticks, 0);
    desktop.steady.set(desktop.steady.now() + std::chrono::milliseconds(5600)); // the machine slept
    desktop.settle();
    EXPECT_EQ(ticks, 1) << "missed ticks are not made up for";
    desktop.advance(Seconds(0.6)); // 8.1 s
    EXPECT_EQ(ticks, 2);
    desktop.advance(Seconds(20));
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(queue.pendingCount(), 0U);
}

} // namespace noctra
