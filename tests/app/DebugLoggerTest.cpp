#include "app/DebugLogger.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDesktop.h"

namespace noctra {

TEST(DebugLoggerTest, DropsTheOldestLineAtTheTwoHundredAndFirst) {
    SimulatedDesktop desktop;
    using namespace std::chrono;
    desktop.wall.set(sys_days{2026y / November / 16} + 9h + 44min + 29s + 107ms);
    DebugLogger log(desktop.wall, desktop.system, desktop.output);
    for (int i = 0; i < 197; ++i)
        log.log("two\nlines"); // one entry
    const std::string first = "[09:44:29.107] Noctra v2.23 initialized\n";
    EXPECT_NE(log.getFullLog().find(first), std::string::npos);
    log.log("one too many");
    const std::string full = log.getFullLog();
    EXPECT_EQ(full.find(first), std::string::npos);
    EXPECT_NE(full.find("[09:44:29.107] macOS Version 14.2 (Build 23C64)\n"), std::string::npos);
    EXPECT_TRUE(full.ends_with("\n[09:44:29.107] one too many"));
}

TEST(DebugLoggerTest, TakesLinesFromManyThreads) {
    SimulatedDesktop desktop;
    DebugLogger log(desktop.wall, desktop.system, desktop.output);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < 300; ++i)
                    log.log("from a thread");
            });
    }
    EXPECT_EQ(desktop.output.lines.size(), 3U + 1200U);
}

} // namespace noctra
