#include "foundation/SerialQueue.h"

#include <atomic>
#include <future>
#include <numeric>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace noctra {

TEST(SerialQueue, RunsSynchronousWorkOnTheCallersThreadBeforeItReturns) {
    SerialQueue queue("test");
    std::thread::id ranOn;
    queue.sync([&] { ranOn = std::this_thread::get_id(); });
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(SerialQueue, KeepsTheOrderOfSubmissionAcrossSyncAndAsync) {
    SerialQueue queue("test");
    std::vector<int> order;
    for (int round = 0; round < 200; ++round) {
        queue.async([&, round] { order.push_back(2 * round); });
        queue.sync([&] { order.push_back(2 * round + 1); });
    }
    std::vector<int> expected(400);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(SerialQueue, NeverRunsTwoPiecesOfWorkAtOnce) {
    SerialQueue queue("test");
    std::atomic<int> inside = 0;
    int total = 0; // guarded by the queue alone
    const auto work = [&] {
        EXPECT_EQ(++inside, 1);
        ++total;
        --inside;
    };
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < 500; ++i)
                    i % 3 == 0 ? queue.async(work) : queue.sync(work);
            });
    }
    queue.sync([] {});
    EXPECT_EQ(total, 2000);
}

TEST(SerialQueue, WaitsForAPieceThatIsUnderWayOnAnotherThread) {
    SerialQueue queue("test");
    std::promise<void> started;
    std::promise<void> finish;
    bool finished = false;
    queue.async([&] {
        started.set_value();
        finish.get_future().wait();
        finished = true;
    });
    started.get_future().wait();
    std::thread waiter([&] { queue.sync([&] { EXPECT_TRUE(finished); }); });
    finish.set_value();
    waiter.join();
}

TEST(SerialQueue, FinishesItsWorkBeforeItIsDestroyedAlsoWorkThatWorkSubmitted) {
    int ran = 0;
    {
        SerialQueue queue("test");
        for (int i = 0; i < 50; ++i)
            queue.async([&] { ++ran; });
        queue.async([&] { queue.async([&] { ran += 100; }); });
    }
    EXPECT_EQ(ran, 150);
}

TEST(SerialQueueDeathTest, StopsTheProcessWhenWorkWaitsForItself) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            SerialQueue queue("com.example.queue");
            queue.sync([&] { queue.sync([] {}); });
        },
        "sync on queue com.example.queue from inside its own work");
}

} // namespace noctra
