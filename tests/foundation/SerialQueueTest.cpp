#include "foundation/SerialQueue.h"

#include <atomic>
#include <numeric>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace noctra {

TEST(SerialQueue, KeepsTheOrderOfSubmissionAndFinishesBeforeItIsDestroyed) {
    std::vector<int> order;
    {
        SerialQueue queue("test");
        for (int round = 0; round < 200; ++round) {
            queue.async([&, round] { order.push_back(2 * round); });
            queue.sync([&] { order.push_back(2 * round + 1); });
        }
        queue.async([&] { queue.async([&] { order.push_back(400); }); });
    }
    std::vector<int> expected(401);
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

} // namespace noctra
