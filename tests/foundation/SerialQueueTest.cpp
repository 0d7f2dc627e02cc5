#include "foundation/SerialQueue.h"

#include <atomic>
#include <future>
#include <numeric>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace noctra {

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

} // namespace noctra
